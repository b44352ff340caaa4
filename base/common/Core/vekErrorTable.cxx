// The message catalogue: value, symbolic name and default (English) message of every status code.
#include "vekErrorTable.h"

#include <algorithm>
#include <iterator>

namespace vek {
namespace {

constexpr ErrorTableRow kRows[] = {
    {0, "VEK_SUCCESS", "All is Good"},
    {1, "VEK_FAILURE", "Process Failed"},
    {3, "VEK_MAX_REACHED", "Maximum value reached, cannot increase more"},
    {4, "VEK_MIN_REACHED", "Minimum value reached, cannot decrease more"},
    {5, "VEK_ID_TOO_BIG", "The ID you selected was too large."},
    {6, "VEK_ID_TOO_SMALL", "The ID you selected was too small."},
    {7, "VEK_WRONG_NUMBER_OF_WARP_ENGINE_CONNECTIONS",
     "There is not a specified address for each warp engine. Please correct."},
    {8, "VEK_NOT_SUPPOSED_TO_REACH_CODE", "Programmer Error. Reached a place in the code that should not be reached."},
    {10, "VEK_INDEX_OUT_OF_RANGE", "The index is out of range."},
    {11, "VEK_FAILED_TO_CREATE_THREAD", "Tried to Spawn a new thread and failed"},
    {12, "VEK_WAITED_TOO_LONG_FOR_THREAD", "The process took too long to complete."},
    {13, "VEK_THREAD_NOT_FINISHED", "The process is still going."},
    {14, "VEK_FAILED_TO_TRY_TO_WAIT_FOR_THREADS", "For some reason, we failed trying to wait for the process to end."},
    {15, "VEK_UNABLE_TO_CREATE_WARPING_HARDWARE_OBJECT",
     "Unable to create an interface to the warping hardware.  Please make sure you have a line of the form "
     "OutputRepresentation = XX in the Initialization file, where XX is the appropriate code for your warping "
     "hardware."},
    {16, "VEK_UPDATE_FUNCTION_NOT_SET_FOR_SIMULATOR",
     "The Update Function on the simulator is not set. This typically means you are using the wrong display with the "
     "Camera Simulator."},
    {17, "VEK_FAILED_TO_ALLOCATE_MEMORY",
     "The program was unable to allocate more memory. Your computer likely has insufficient memory."},
    {18, "VEK_NO_NETWORKED_MACHINES_SPECIFIED",
     "You must specify networked DNS addresses with using multiple computers."},
    {19, "VEK_UNKNOWN_FILE_EXTENSION", "Did not recognize the file extension."},
    {20, "VEK_UNKNOWN_NUMBER_OF_PROJECTORS_PER_CAVE_WALL", "The number of projectors per wall is not recognized."},
    {21, "VEK_UNABLE_TO_FORM_ADJACENCY_ARRAY",
     "There is not enough information to form the adjacency information of the projectors."},
    {22, "VEK_CAVESCREEN_PARAMETERS_NOT_SET",
     "The cave screen parameters are not defined properly. Please step through the calibration setup wizard for a cave "
     "screen one more time."},
    {23, "VEK_EMULATOR_WRONG_NUMBER_OF_ORIGINAL_CAMERA_IMAGES",
     "You set the wrong number of original camera images for the emulator"},
    {24, "VEK_SPECIFY_METHOD_FOR_REMOTE_DISPLAY_COMMUNICATION",
     "No method was specified for connecting to remote computers."},
    {25, "VEK_TOO_MANY_ELEMENTS",
     "Too many elements for the array size -- typically means reached MAX_SHORT or something like that."},
    {26, "VEK_ENCODER_NOT_FOUND", "Encoder for writing image was not found."},
    {27, "VEK_COULD_NOT_FIND_FILE_EXTENSION", "The file did not seem to have an extension."},
    {28, "VEK_UNABLE_TO_WRITE_IMAGE_FILE", "Was not able to write an image file with unknown error."},
    {29, "VEK_FAILED_TO_READ_IMAGE", "Was not able to read an image file."},
    {30, "VEK_FAILED_TO_CONNECT_TO_RELAY", "Could not connect to relay controller."},
    {31, "VEK_NO_INTERSECTIONS_FOUND",
     "Could not find an intersection from the camera to the point specified. Programmer Error."},
    {32, "VEK_FAILED_TO_RUN_EXECUTABLE", "Failed to run an executable."},
    {33, "VEK_COULD_NOT_FIND_IDENTITY_WARP_FOR_UPLOAD",
     "An identity warp could not be found for upload. Please contact technical support."},
    {34, "VEK_INVALID_PARAMETERS", "Invalid parameter."},
    {35, "VEK_MINIMIZATION_PARAMETER_NOT_SET", "The parameters for the non-linear minimization were not set properly."},
    {36, "VEK_DOTNET_REMOTING_ERROR", "Could not retrieve remote object suing .NET remoting."},
    {37, "VEK_NETLIB_DISPLAY_NOT_STARTED_ERROR", "The NetDisplay has not been started."},
    {38, "VEK_NETLIB_IO_ERROR", "Could not perform remote IO operation."},
    {39, "VEK_COULD_NOT_DECREASE_ERROR_FURTHER",
     "The numerical iteration was unable to decrease the error further, but had not yet met the convergence criteria."},
    {40, "VEK_BAD_PARSE", "Failed to Parse Input File Correctly."},
    {41, "VEK_SCREEN_MODEL_NOT_INITIALIZED", "The ScreenModel is not initialized yet."},
    {42, "VEK_VARIABLE_NOT_ARRAY_TYPE", "The VariableInfo object does not represent an Array type."},
    {43, "VEK_UNKNOWN_VARIABLE_TYPE", "The VariableInfo data type is unknown."},
    {44, "VEK_UNABLE_TO_ALLOCATE_MEMORY", "Failed to allocate memory."},
    {45, "VEK_UNSUPPORTED_FUNCTION_CALL", "Function call not supported in class version selected"},
    {46, "VEK_NOT_IMPLEMENTED", "The programmer called a function that is not implemented."},
    {47, "VEK_COMMAND_TIMEOUT", "Command timed out"},
    {48, "VEK_UNABLE_TO_INSTANTIATE_ACTIVEX_CONTROL",
     "Unable to instantiate an ActiveX Control for the Camera\r\nActiveX DLLs require pre-registration. To repair, "
     "please run the software setup script"},
    {49, "VEK_UNABLE_TO_SET_ACTIVEX_CONTROL_PARAMETERS", "Unable to set parameters in ActiveX Camera Control"},
    {50, "VEK_INVALID_SERVER_RESPONSE", "Server returned invalid response to a command request"},
    {51, "VEK_UNABLE_TO_GET_REGISTRY_VALUE", "Unable to get registry value from operating system."},
    {52, "VEK_UNABLE_TO_WRITE_REGISTRY_VALUE", "Unable to write value to registry."},
    {53, "VEK_INITIALIZATION_SUCCEEDED", "Initialization Succeeded"},
    {54, "VEK_TOO_MANY_REGIONS",
     "The Region Finder found so many regions that it is unable to handle them all. This is a strong indication of "
     "poor lighting conditions. If the room is bright, please turn down the lights in the room. If the room is dark, "
     "please a small amount of background light."},
    {55, "", "Improper setup of display based on networked computers."},
    {56, "VEK_UNABLE_TO_CONNECT_TO_PROJECTOR", "Unable to connect to Projector"},
    {57, "VEK_UNABLE_TO_LOAD_DLLS", "Unable to load DLLs required for operation"},
    {58, "VEK_ERROR_WRITING_TO_PROJECTOR", "Unable to Display Image on Projector"},
    {59, "VEK_CONFLICTING_OPTIONS_SELECTED",
     "Some subset of options that are currently selected are conflicting options."},
    {60, "VEK_MERGELIGHT_SDK_ERROR", "Error in MergelightSDK."},
    {61, "VEK_FAILED_TO_CONVERGE_CAMERA_GAIN",
     "The Automatic Camera Gain algorithm failed to find a good result. Please try manually setting your gain."},
    {62, "VEK_UNKNOWN_IMAGE_CONTAINER_TYPE", "The programmer attempted to use an unknown image container type."},
    {63, "VEK_NEGATIVE_MONITOR_COORDS",
     "The system has detected a projector with negative screen coordinates.  Please exit the program and adjust the "
     "operating system display layout on all local and remote computers such that no display has negative "
     "coordinates."},
    {64, "VEK_WARP_ENGAGED_DURING_CALIBRATION",
     "The display cannot be calibrated while the warp is engaged.  Please disengage the warp and attempt to calibrate "
     "again."},
    {65, "VEK_RECALIBRATE_WITHOUT_CALIBRATION",
     "This feature cannot be used until the system has been configured and successfully calibrated."},
    {66, "VEK_MANUAL_CALIBRATION_OPENGL_VERSION",
     "This product requires a graphics card that supports OpenGL version 2.1 or higher.  Please upgrade your graphics "
     "card."},
    {67, "VEK_EMULATOR_NOT_READY", "The Emulator could not be properly setup when called"},
    {68, "VEK_NO_MONITORS_SELECTED", "At least one monitor must be selected."},
    {69, "VEK_DISPLAY_CLIENT_TWEAKING_UNSUPPORTED",
     "One or more display clients do not support manual tweaking.  Please upgrade all display clients to the latest "
     "version."},
    {70, "VEK_UNABLE_TO_WRITE_TO_STREAM", "Failed to write object to stream."},
    {71, "VEK_UNABLE_TO_READ_FROM_STREAM", "Failed to read object from stream."},
    {72, "VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING", "Unable to open file for writing."},
    {73, "VEK_FILE_NOT_FORMATTED_PROPERLY", "Unable to parse file properly."},
    {74, "VEK_UNABLE_TO_OPEN_FILE_FOR_READING", "Unable to open file for reading."},
    {75, "VEK_UNABLE_TO_READ_NUM_FROM_FILE",
     "Unable to read numbers from calibration data saved on disk. Please check or redo calibration."},
    {76, "VEK_UNABLE_TO_DELETE_FILE",
     "Unable to delete the old version of a temporary file.  This probably means that someone else is accessing the "
     "file."},
    {77, "VEK_UNABLE_TO_COPY_FILE", "Could not copy file."},
    {78, "VEK_ACCESS_DENIED_IN_WRITING_FILE", "Access denied in writing file."},
    {79, "VEK_FILE_NOT_FOUND", "File Not Found"},
    {80, "", "Please calibrate first to generate the files needed to warp the desktop."},
    {83, "VEK_UNABLE_TO_CREATE_RESTORE_POINT", "Unable to create restore point."},
    {84, "VEK_UNABLE_TO_RESTORE_CONFIGURATION", "Unable to restore configuration."},
    {203, "VEK_TOO_MANY_SPOTS_FOUND",
     "Too many spots found. This is generally an indication of a lighting environment in which it is difficult to "
     "distinguish between the room's background lighting and the spots from the projector. It may also be an "
     "indication that the gain of the camera is much too large (so that the entire image is saturated), or much too "
     "small (so that everything looks nearly black). Please look in the Camera Wizard to remedy this problem."},
    {204, "VEK_TOO_FEW_SPOTS_FOUND",
     "Too few spots found. The system is struggling to detect the projector on the wall. Please check to make sure the "
     "camera is in focus, that the gain is high enough and that the camera is not over-satured. Please all make sure "
     "that the room lights (or sunlight) are not as bright as the spots on the screen. Please do your best to correct "
     "the problem and restart the calibration."},
    {205, "VEK_UNABLE_TO_DETECT_GRID_FROM_SPOTS",
     "Unable to find a grid from the spots. This is an indication of poor lighting conditions in the room. Please try "
     "to turn the room light down, or adjust the gain on the camera."},
    {206, "VEK_COULD_NOT_FIND_BRIGHT_REGION",
     "Could not find a bright region. Please check the gain on the camera or make sure there is not a light source "
     "that is the same brightness of the projectors. Also, please make sure that the camera is not over-saturated or "
     "has a small gain."},
    {207, "VEK_BRIGHT_REGION_EXTENDS_PAST_CAMERA", " Please move the camera. The projector is not entirely in view."},
    {208, "VEK_BRIGHT_REGION_RATIO_TOO_BIG",
     "The width/height ratio appears tremendously skewed for the bright region. Please check the gain on the camera "
     "and make sure the room lights are not too strong."},
    {209, "VEK_INSUFFICIENT_BRIGHT_DARK_CONTRAST",
     "Insufficient Camera Contrast. Please adjust the Gain on the Camera from the Camera Setup Wizard, or change the "
     "ambient lighting. Right now the gain is too low to distinguish dark regions from bright regions."},
    {210, "VEK_COULD_NOT_DISTIGUISH_BRIGHT_FROM_BACKGROUND",
     "Insufficient Camera Contrast. The dark areas are about as bright as bright areas. Please adjust the gain on the "
     "camera from the Camera Setup Wizard, or change the ambient lighting. Right now the gain is too low to "
     "distinguish bright regions from the background."},
    {211, "VEK_ONE_COLOR_MUCH_BRIGHTER", "One Color Channel is much brighter than the rest. Color wheel artifact?"},
    {212, "VEK_COLOR_CHANNELS_TOO_DARK",
     "We were expecting the colors to be brighter. Please turn up the gain on the camera using the Camera Setup "
     "Wizard. If changing the camera gain is not possible, you may change the 'Camera Dynamic Range Threshold' in the "
     "Advanced Options menu."},
    {213, "VEK_FAILED_TO_FIND_PREDICTED_SPOTS", "We did not find enough of the predicted spots where they should be."},
    {214, "VEK_BACK_CAMERA_TOO_FEW_POINTS", "Need at least 3 spots to find a warping"},
    {215, "VEK_FAILED_TO_UPDATE_BACK_CAMERA", "Need non-degenerate arrangement of spots to find back camera warping."},
    {216, "VEK_NO_ABILITY_TO_TRANSFER_INFO_TO_CAMERA",
     "When using multiple cameras, the cameras must overlap sufficiently to transfer information. The current setup "
     "does not allow that process to occur. Please make sure that for every pair of adjacent cameras, an entire "
     "projector is visible by both."},
    {217, "VEK_REGION_CENTER_NOT_FOUND", "Could not find the center of the region in the search area"},
    {218, "VEK_REGION_NOT_FOUND_IN_IMAGE", "Did not find the searched for region in the image."},
    {219, "VEK_PROJECTORS_NOT_SEEN_BY_SINGLE_CAMERA", "Projector Neighbor Pair not seen by single camera"},
    {220, "VEK_KEYSTONE_CORNERS_NOT_INITIALIZED", "Keystone Corners not Initialized"},
    {221, "VEK_KEYSTONE_NO_WARP_FOUND_FROM_PARAM", "No Keystone Correction was found from the parameters."},
    {222, "VEK_WRONG_NUMBER_OF_PROJECTOR_CONNECTIONS",
     "There is not a specified projector address for each display. Please correct."},
    {223, "VEK_CANNOT_READ_CALIBRATION_INFO_FROM_DISK",
     "Cannot read calibration information from disk because the calibration information does not appear to be on the "
     "disk."},
    {224, "VEK_DID_NOT_SET_CAMERA_SPACE_CORNERS",
     "The Camera Space Corners were supposed to be set, but they were not."},
    {225, "VEK_UNABLE_TO_SET_CAMERA_SPACE_CORNERS_FROM_INPUT_SPACE_CORNERS",
     "The Fill Region points you selected are outside the projectors being calibrated. Please reselect those points."},
    {226, "VEK_UNABLE_TO_READ_INPUT_SPACE_CORNERS", "Unable to read fill region points from a file."},
    {227, "VEK_UNABLE_TO_READ_CAMERA_SPACE_CORNERS",
     "Unable to read fill region points from the view of the camera from a file."},
    {228, "VEK_UNABLE_TO_FIND_CORNERS_OF_BRIGHT_REGION", "Unable to read find the corners of the displayed region."},
    {229, "VEK_UNABLE_TO_FIND_CORNERS_OF_MESH", "Unable to find the extrapolated corners of the displayed region."},
    {230, "VEK_UNKNOWN_CAMERA_TO_SCREEN_TRANSFORM", "Programmer Error. No Camera to Screen Transform was specified."},
    {231, "VEK_RATIO_OF_SCREEN_NOT_SET", "The desired ratio of the resulting screen was not set."},
    {232, "VEK_NOT_ENOUGH_INFO_FOR_ARTICULATED_WARP",
     "For An Articulated Screen there must be at least 2 points in the x- and y- direction. These points define the "
     "boundary of 1 screen."},
    {233, "VEK_INFORMATION_CONFLICTS_FOR_ARTICULATED_WARP",
     "You provided a number of points to the define the boundary of the articulated screen. But, you provided a "
     "different number of correspondences for the Camera."},
    {234, "VEK_DID_NOT_SET_CAMERA_SPACE_CONTROL_POINTS",
     "The Camera Space Control Points were supposed to be set, but they were not."},
    {235, "VEK_UNABLE_TO_SET_INPUT_SPACE_CONTROL_POINTS",
     "The control points you selected are outside the projectors being calibrated. Please reselect those points."},
    {236, "VEK_CAVESCREEN_WALL_NOT_USED",
     "One of the walls on the cavescreen was not used. Unable to find boundary of a cavescreen wall."},
    {237, "VEK_ADJACENT_PROJECTORS_NOT_SEEN_BY_ANY_CAMERA",
     "Two adjacent projectors were not seen by any camera.  Please reposition the cameras and recalibrate."},
    {238, "VEK_INADEQUATE_NUM_CONTROL_POINTS_SEEN",
     "Cameras must see either 4 or 6 or more camera control points. A camera did not see enough control points."},
    {239, "VEK_FAILURE_TO_CONVERGE_ON_COLOR", "The algorithm to calibrate color did not converge."},
    {240, "VEK_SET_PROJECTOR_VALUE_TOO_SMALL", "Projector value too small"},
    {241, "VEK_LIGHT_BULB_DIM", "A light bulb looks dim"},
    {242, "VEK_FAILED_TO_BARELY_SATURATE_CAMERA",
     "Was unable to change the camera gain to barely saturate the camera."},
    {243, "VEK_FAILED_TO_BARELY_UNSATURATE_CAMERA",
     "Was unable to change the camera gain to barely unsaturate the camera."},
    {244, "VEK_FAILED_TO_CONVERGE_ON_INTENSITIES", "The algorithm to correct intensities did not converge."},
    {245, "VEK_GLOBAL_FRUSTUM_NOT_INITIALIZED", "The global frustum view has not been initialized."},
    {246, "VEK_FRUSTUM_NOT_INITIALIZED", "The frustum view has not been initialized."},
    {247, "VEK_FRUSTUM_SUBSECTION_INVALID_PARENT",
     "The panret frustum is invalid for this subview ( the global frustum seems to have changed since this subview was "
     "created )."},
    {248, "VEK_FRUSTUM_POINT_NOT_IN_FRONT",
     "For the SDK for Simulators: The Frustum is bigger than 180 degrees, which is not allowed by OpenGL or DirectX.\n "
     "Either the calibration is poor or the eye-point should be moved.Try turning off the ”SDK for Simulators”, and "
     "seeing if the calibration has a problem. If there is no problem, try moving the eye-point away from the screen "
     "in the Advanced Configuration menu."},
    {249, "VEK_FRUSTUM_NO_POINTS_USED_IN_MESH",
     "There are no points in hte mesh able to be used for creating a frustum."},
    {250, "VEK_UNABLE_TO_FORCE_CONNECTIVITY", "Failed to force SpatialConnectivity"},
    {251, "VEK_UNABLE_TO_RE_ADD_NEIGHBOR", "Failed to Re-Add the SpatialConnectivity neighbor information."},
    {252, "VEK_UNABLE_TO_ADD_NEIGHBOR", "Faield to add neighbor information to SpatialConnectivity."},
    {253, "VEK_INCONSISTENT_CONNECTIVITY_INFERRED", "Failed to infer consistent connectivity information."},
    {254, "VEK_UNABLE_TO_WRITE_CONNECTIVITY", "Failed to write SpatialConnectivity."},
    {255, "VEK_UNABLE_TO_READ_CONNECTIVITY", "Failed to read SpatialConnectivity."},
    {256, "VEK_UNABLE_TO_CREATE_CONNECTIVITY", "Failed to create connectiviry."},
    {257, "VEK_CONNECTIVITY_GRAPH_NOT_SET",
     "This Functionality requires connectivity information which is not available without calibrating, or redefining "
     "the fill region."},
    {258, "VEK_ITERATIONS_EXCEEDED_LIMIT",
     "Iteration count exceeded maximum iteration threshold, computation clipped."},
    {259, "VEK_UNKNOWN_CAMERA_FOR_GAIN_CALIBRATION",
     "The Camera you are using is not supported for automatic camera gain calibration."},
    {260, "VEK_TASK_SEQUENCE_GOTO_EARLIER_TASK", "<<set task label here>>"},
    {261, "VEK_TASK_SEQUENCE_CONTROL_SEQUENCE_FAILURE",
     "Critical Error: The Task Sequence has encountered a problem while responding to a control error"},
    {262, "", "This message should never be seen by the user; it is used to maintain control in sequence of tasks."},
    {263, "VEK_POINT_NOT_IN_FRONT_OF_CAMERA", "The point is not in front of the camera, it is behind the camera."},
    {264, "VEK_DID_NOT_ACHIEVE_TOLERANCE", "An algorithm failed to achieve its desired tolerance."},
    {265, "VEK_CALIBRATION_WAS_INTERRUPTED_BY_USER", "The calibration was interrupted by the user."},
    {266, "VEK_CANNOT_IGNORE_ANY_CAMERA_PROJECTOR_PAIRS",
     "Could not find any Camera/Projector pairs to ignore in order to fix partial spot detection errors."},
    {267, "VEK_CANNOT_IGNORE_CAMERA_PROJECTOR_PAIR",
     "Could not ignore Camera/Projector pair which may have fixed partial spot detection error."},
    {273, "", "The color optimization could not be initialized."},
    {301, "VEK_INIT_CAMERA_GRAPH_ERROR", "Camera Initialization Error"},
    {302, "VEK_MISMATCHED_CAMERA_COUNT", "Fewer cameras are detected than have been requested"},
    {303, "VEK_UNABLE_TO_INITIALIZE_CANON",
     "Could not initialize the Canon camera. The camera may no longer be powered, the USB cable may be unplugged, or "
     "the camera may be in use by another program. It is also possible that the camera has frozen. Please remove all "
     "power from the camera (including the battery). Then, restore power to the camera."},
    {304, "VEK_FAILED_TO_TAKE_CANON_PHOTO",
     "The Canon camera did not succeed in taking a picture. The camera may no longer be powered, the USB cable may be "
     "unplugged, or the camera may be in use by another program. It is also possible that the camera has frozen. "
     "Please remove all power from the camera (including the battery). Then, restore power to the camera."},
    {305, "VEK_CANON_NOT_IN_MANUAL_SHOOTING_MODE",
     "The Canon camera is not in Manual Shooting Mode. Please move the dial on the camera to Manual."},
    {306, "VEK_CANON_NOT_IN_MANUAL_FOCUS_MODE",
     "The Canon camera must be in Manual Focus Mode. There is a slider on the lens that can be moved from AF to MF. "
     "Please do so."},
    {307, "VEK_CANON_CANNOT_GET_PROPERTY_SIZE",
     "Error getting information from the Canon Camera. First try restarting Mergelight. If that does not help, try "
     "removing all power from the camera and the USB cable, then restore the power and then the USB cable. If these "
     "procedures do not fix the problem,this error is an indication of a problem with the camera or the cabling to the "
     "camera."},
    {308, "VEK_CANON_WRONG_ALLOCATED_PROPERTY_SIZE",
     "The Canon Camera returned unexpected data to the computer. You might try turning the camera on and off and "
     "unplugging and then re-plugging in the USB cable."},
    {309, "VEK_CANON_CANNOT_SET_PROPERTY_DATA",
     "Error setting information to the Canon Camera.  First try restarting Mergelight. If that does not help, try "
     "removing all power from the camera, as well as the USB cable, then restore the power and then the USB cable. If "
     "these procedures do not fix the problem, this error is an indication of a problem with the camera or the cabling "
     "to the camera."},
    {310, "VEK_CANON_CANNOT_GET_PROPERTY_DATA",
     "Error getting information to the Canon Camera.  First try restarting Mergelight. If that does not help, try "
     "removing all power and the USB cable from the camera, then restore the power and then the USB cable. If these "
     "procedures do not fix the problem, this error is an indication of a problem with the camera or the cabling to "
     "the camera."},
    {311, "VEK_CANON_COULD_NOT_LOCK",
     "The Canon Camera returned unexpected data to the computer. You might try turning the camera on and off and "
     "unplugging and then re-plugging in the USB cable."},
    {312, "VEK_LOST_CONNECTION_TO_CANON_CAMERA",
     "Lost the connection to a Canon Camera. The camera may no longer be powered, the USB cable may be unplugged, or "
     "the camera may be in use by another program. It is also possible that the camera has frozen. Please remove all "
     "power from the camera (including the battery). Then, restore power to the camera."},
    {313, "VEK_NO_CANON_CAMERA_FOUND",
     "Did not find a Canon camera. Please check to make sure a camera is plugged in and that another program is not "
     "using the camera."},
    {314, "VEK_CANON_WRITE_FAILURE", "Was unable to get the picture from the Canon."},
    {315, "VEK_NULL_CAMERA", "Unable to find a usable camera."},
    {316, "VEK_COULD_NOT_CONNECT_TO_ANY_CAMERA",
     "No Camera Found. Please check to make sure the camera is plugged in. Also, check to make sure another program is "
     "not using the camera. You can verify the camera connection using the Camera Setup Wizard."},
    {317, "VEK_SERIAL_READER_NO_MORE_FILES", "Serial Reader has no more files to read, but one was requested."},
    {318, "VEK_CAMERA_NOT_SUPPORTED_FOR_COLOR",
     "The Camera you are using is not supported for Color Balancing. Please disable Color Balancing in Setup and "
     "launch the calibration again."},
    {325, "VEK_LOST_CONNECTION_TO_CAMERA",
     "Lost the connection to a camera. The camera may no longer be powered, the USB cable may be unplugged, or the "
     "camera may be in use by another program. It is also possible that the camera has frozen. Please disconnect the "
     "camera from your computer and remove all power from the camera (including any battery). Then, restore power to "
     "the camera and reconnect it to your computer."},
    {326, "VEK_FAILED_TO_TAKE_CAMERA_PHOTO",
     "The camera did not succeed in taking a picture. The camera may no longer be powered, the USB cable may be "
     "unplugged, or the camera may be in use by another program. It is also possible that the camera has frozen. "
     "Please disconnect the camera from your computer and remove all power from the camera (including any battery). "
     "Then, restore power to the camera and reconnect it to your computer."},
    {327, "VEK_CAMERA_CANNOT_SET_PROPERTY_DATA",
     "Error changing camera settings.  First try restarting Mergelight. If that does not help, try disconnecting and "
     "reconnecting the camera. If these procedures do not fix the problem, this error is an indication of a problem "
     "with the camera or the cabling to the camera."},
    {328, "VEK_CAMERA_CANNOT_GET_PROPERTY_DATA",
     "Error getting information from the camera.  First try restarting Mergelight. If that does not help, try "
     "disconnecting and reconnecting the camera. If these procedures do not fix the problem, this error is an "
     "indication of a problem with the camera or the cabling to the camera."},
    {329, "VEK_COULD_NOT_LOAD_BASLER_LIBS",
     "The Basler camera libraries could not be loaded.  Please install the Basler pylon Runtime appropriate for your "
     "system."},
    {335, "VEK_COULD_NOT_LOAD_CYBERNETYX_LIBS", "The Cybernetyx camera libraries could not be loaded."},
    {340, "VEK_UNABLE_TO_TAKE_PTZ_PICTURE", "Unable to take and store PTZ Picture"},
    {341, "VEK_PTZ_CAMERA_NOT_RECOGNIZED",
     "PTZ Camera not found, Possible Causes: Unsupported type, Misconfigured IP address, Not powered or Not attached"},
    {342, "VEK_UNABLE_TO_INITIALIZE_PAN_TILT_UNIT", "Unable to initialize Pan/Tilt Unit, response not recognized"},
    {343, "VEK_PAN_VALUE_OUT_OF_RANGE", "Requested PAN value outside of mechanical range, command rejected"},
    {344, "VEK_TILT_VALUE_OUT_OF_RANGE", "Requested TILT value outside of mechanical range, command rejected"},
    {350, "VEK_UNABLE_TO_LOAD_NEC_LIBRARY", "Unable to load the library for communicating to the NEC projectors."},
    {351, "VEK_NEC_GENERIC_ERROR", "Generic Error loading Image on NEC Projector"},
    {360, "VEK_UNABLE_TO_CREATE_HARDWARE_WARP", "Warp generation for the external warping hardware did not succeed."},
    {361, "VEK_UNABLE_TO_INITIALIZE_WARPING_HARDWARE", "The warping hardware could not be initialized."},
    {362, "VEK_UNABLE_TO_ENABLE_HARDWARE_WARP",
     "The warp map on the external warping hardware could not be turned on."},
    {363, "VEK_WHITEHORSE_ERROR", "WhiteHorse subsystem failed."},
    {364, "VEK_WHITEHORSE_RPC_ERROR", "WhiteHorse RPC call failed."},
    {365, "VEK_WHITEHORSE_EMBEDDED_ERROR", "WhiteHorse warping hardware returned embedded failure code."},
    {366, "VEK_WHITEHORSE_DEVICENAME_FORMAT_ERROR",
     "Device name string format incorrect for WhiteHorse warping hardware."},
    {367, "VEK_WHITEHORSE_UNKNOWN_OUTPUT_RESOLUTION", "Unknown output resolution for WhiteHorse warping hardware."},
    {368, "VEK_SOI_UNEXPECTED_RETURNED_DATA_LENGTH",
     "An unexpected data length was received from the Silicon Optix warping hardware."},
    {369, "VEK_SOI_API_ERROR", "Silicon Optix warping hardware: API call failed."},
    {401, "VEK_COULD_NOT_CONNECT_TO_SOCKET", "Could not connect to socket."},
    {402, "VEK_NO_RESPONSE_ON_SOCKET", "Could not get response on socket."},
    {403, "VEK_SOCKET_ERROR_IN_COMMAND", "Error in command using socket to remote computer."},
    {404, "VEK_SOCKET_BAD_RESPONSE", "Unexpected response from socket to remote computer."},
    {405, "VEK_CONNECTION_CLOSED", "Connection to Server is closed, Server is not active"},
    {406, "VEK_IP_ADDRESS_NOT_SPECIFIED", "IP Address for camera has not been specified"},
    {407, "VEK_INVALID_RESPONSE", "Invalid or unexpected response received"},
    {408, "VEK_FAILED_TO_SEND_DATA", "Failed to send data to hardware."},
    {409, "VEK_COULD_NOT_OPEN_SERIAL_PORT", "Could not open serial port."},
    {410, "VEK_DID_NOT_GET_EXPECTED_RESPONSE", "Did not get expected response from hardware."},
    {411, "VEK_NO_SERIAL_PORT_SET", "No Serial Port has been chosen or initialized."},
    {412, "VEK_SERIAL_PORT_SENT_WRONG_NUMBER_OF_CHARACTERS",
     "Serial Port sent the wrong number of characters to the device."},
    {413, "VEK_SERIAL_COMMUNICATION_NOT_SUPPORTED", "Device Does not support Serial communications"},
    {414, "VEK_TCP_COMMUNICATION_NOT_SUPPORTED", "Device Does not support TCP communications"},
    {415, "VEK_UNKNOWN_COMMUNICATION_TYPE",
     "Device Does not know about communication type Requested, and it is not supported."},
    {416, "VEK_WAITED_TOO_LONG", "Waited too long for the device to respond."},
    {417, "VEK_COMMUNICATION_PORT_NOT_SET", "Communications address not set"},
    {418, "VEK_COMMUNICATION_PARAMETERS_NOT_SET", "A parameter is not set"},
    {419, "VEK_UNABLE_TO_OPEN_COMMUNICATION", "Unable to open communications to the device."},
    {420, "VEK_NO_BYTES_RECEIVED", "A command received no response."},
    {421, "VEK_CANNOT_CONNECT_TO_NETWORK_ID", "Cannot connect to network address"},
    {422, "VEK_CALIBRE_LEFT_RIGHT_BLEND_VALUE_OVERFLOW",
     "Sum of the left and right edgeblend parameters must be less than two-thirds of the output X resolution. Try "
     "enlarging the fill region horizontally, or moving the projectors apart to reduce the amount of horizontal "
     "overlap."},
    {423, "VEK_CALIBRE_TOP_BOTTOM_BLEND_VALUE_OVERFLOW",
     "Sum of the top and bottom edgeblend parameters must be less than two-thirds of the output Y resolution. Try "
     "enlarging the fill region vertically, or moving the projectors apart to reduce the amount of vertical overlap."},
    {424, "VEK_CALIBRE_ERROR", "Calibre subsystem failed."},
    {425, "VEK_CALIBRE_RPC_ERROR", "Calibre RPC call failed."},
    {426, "VEK_CALIBRE_EMBEDDED_ERROR", "Calibre warping hardware returned embedded failure code."},
    {427, "VEK_CALIBRE_DEVICENAME_FORMAT_ERROR",
     "Device name string format incorrect for WhiteHorse warping hardware."},
    {428, "VEK_NETWORK_ADDRESSES_FAILED_REACHABILITY_CHECK",
     "Cannot oper a connection to the computer with the remote display, typically on port 8085. Either the computer is "
     "not there or the network client is not listening."},
    {429, "VEK_UNSUPPORTED_CLIENT_COMMAND",
     "A command was not recognized by the DisplayClient.  Please upgrade the DisplayClient to a version that is "
     "compatible with your software."},
    {430, "VEK_GRAPHICS_CARD_OVERLAP_OUT_OF_PIXELS",
     "The Graphics Card Overlap warp has failed because the generated overlaps fall outside the physical overlaps of "
     "the projectors. Please adjust the fill region or projector placement in order to better match the physical "
     "overlaps to the fill region."},
    {431, "", "There was an error communicating with the graphics driver."},
    {432, "", "The graphics card does not support overlaps."},
    {433, "", "The graphics card does not support warp and blend."},
    {434, "", "The graphics driver does not support warp and blend."},
    {435, "",
     "An error occurred while trying to automatically configure NVIDIA Mosaic Mode.  Please enable Mosaic Mode "
     "manually through the NVIDIA Control Panel."},
    {436, "VEK_CAMERA_SERVER_COMM_ERROR", "An error occurred communicating with the camera server."},
    {437, "VEK_DISPLAY_CLIENT_COMM_ERROR", "An error occurred communicating with the display client."},
    {450, "", "Failed to run remote executable."},
    {451, "", "Failed to get exitcode for remote executable, this could also mean the executable was not present."},
    {452, "VEK_UNSUPPORTED_PYLON_VERSION",
     "An unsupported version of the Basler Pylon API is installed.  Please install version 3.2.3.3215."},
    {460, "", "The remote warp type request is not supported."},
    {461, "", "Unable to engage the remote warp."},
    {462, "", "Unable to disengage the remote warp."},
    {470, "", "There was an error engaging the desktop warp."},
    {471, "", "There was an error disengaging the desktop warp."},
    {520, "VEK_SOIL_ERROR", "Generic Error with SOIL"},
    {521, "VEK_INVALID_IMAGE_FILE", "Invalid Image File, or Image exceeds max texture size."},
    {522, "VEK_GRAPHICS_CARD_LACKS_SUPPORT",
     "Your graphics card will not support using our SDK within Mergelight. To use the feature you, please upgrade the "
     "graphics card on this computer to a newer one."},
    {523, "VEK_OPENGL_ERROR", "Opengl failed to load something properly."},
    {524, "VEK_NPOT_NOT_SUPPORTED", "System does not support non-powers of two sized textures."},
    {550, "VEK_DATATON_NEED_MORE_PROJECTOR_OVERLAP", "Not enough projector overlap for pre-split movie content."},
    {551, "VEK_DATATON_FAILED_TO_CREATE_AND_OPEN_MESH_FILE", "Failed to create and open mesh file for dataton warp."},
    {552, "VEK_DATATON_DID_NOT_SPECIFY_WATCHOUT_SRC_DEST_IN_INITFILE",
     "You did not specify a src and dest dataton production file in the INIT file in the DEI directory."},
    {553, "VEK_DATATON_SYSTEM_COMMAND_TO_JAVA_INTERFACE_FAILED",
     "A command to input veltra mesh warp files to dataton production files failed."},
    {554, "VEK_DATATON_EACH_DISPLAY_SHOULD_HAVE_A_MESH", "Each display should have a mesh warp."},
    {555, "VEK_DATATON_DID_NOT_SPECIFY_CONTENT_RES_OR_OVERLAPS", "Please specify content resolution and overlaps."},
    {556, "VEK_DATATON_UNEQUAL_DISPLAY_RESOLUTIONS", "Each display should have the same resolution."},
    {557, "VEK_DATATON_OVERLAP_IS_NEGATIVE", "The overlap calculated is negative or incorrect."},
    {560, "VEK_CHROMIUM_FAILED_TO_START_MOTHERSHIP", "Failed to start the mothership process."},
    {561, "VEK_CHROMIUM_FAILED_TO_START_CRSERVER", "Failed to start remote Crhomium server 'crserver'."},
    {562, "VEK_CHROMIUM_FAILED_TO_CREATE_WARP", "Failed to generate and distribute a Chromium warp."},
    {563, "VEK_CHROMIUM_FAILED_TO_KILL_PROCESS", "Failed to kill old Chromium process."},
    {564, "VEK_CHROMIUM_FAILED_TO_START_CRAPPFAKER", "Failed to start the Chromium CRAppFaker process."},
    {570, "VEK_UNABLE_TO_CREATE_MESH", "Unable To Create Mesh"},
    {571, "VEK_UNABLE_TO_LOCK_VERTEX_BUFFER", "Unable to lock vertex Buffer"},
    {572, "VEK_UNABLE_TO_LOCK_INDEX_BUFFER", "Unable to lock index buffer"},
    {573, "VEK_UNABLE_TO_UNLOCK_INDEX_BUFFER", "Unable to unlock index buffer"},
    {574, "VEK_UNABLE_TO_WRITE_DX_MESH_TO_DISK", "Unable To write mesh to disk."},
    {575, "VEK_UNABLE_TO_CREATE_DX_DEVICE", "Unable to create a DirectX Device to create a mesh file."},
    {580, "VEK_GDI_PLUS_NOT_INITIALIZED", "Gdiplus is not initialized."},
};

}  // namespace

const ErrorTableRow* FindErrorTableRow(int code) {
  auto row = std::lower_bound(std::begin(kRows), std::end(kRows), code,
                              [](const ErrorTableRow& r, int c) { return r.code < c; });
  return (row != std::end(kRows) && row->code == code) ? row : nullptr;
}

const ErrorTableRow* ErrorTableBegin() { return std::begin(kRows); }
const ErrorTableRow* ErrorTableEnd() { return std::end(kRows); }

}  // namespace vek
