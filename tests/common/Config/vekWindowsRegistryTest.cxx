#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "vekErrorHelper.h"
#include "vekPlatform.h"
#include "vekTestSupport.h"
#include "vekWindowsRegistry.h"

namespace vek {
namespace {

using Root = platform::RegistryRoot;

// Windows (Wine) works on the real registry, so the keys are removed before and after each test;
// elsewhere the store lives in a fresh folder per test.
class WindowsRegistryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::SetEnvironmentValue("VEK_REGISTRY_DIR", Store.Path().string());
    Clean();
  }
  void TearDown() override {
    Clean();
    platform::SetEnvironmentValue("VEK_REGISTRY_DIR", "");
  }
  static void Clean() {
    platform::RegistryDeleteKey(Root::LocalMachine, "Software\\Veltra Display");
    platform::RegistryDeleteKey(Root::CurrentUser, kRegistryCompanionKey);
  }
  static void PutPlayback(const char* name, const std::string& text) {
    ASSERT_EQ(WindowsRegistry::SetRegistryString(name, text, kRegistryPlaybackKey), VEK_SUCCESS);
  }
  test::TempDirectory Store;
};

TEST_F(WindowsRegistryTest, StringsReadBackWithinTheBufferAndReadsNeverCreateKeys) {
  std::string value = "preset";
  EXPECT_EQ(WindowsRegistry::GetVeltraDisplayString("Name", value, 100), VEK_UNABLE_TO_GET_REGISTRY_VALUE);
  EXPECT_EQ(value, "preset");
  EXPECT_FALSE(platform::RegistryKeyExists(Root::LocalMachine, kRegistryCalibrationKey));

  ASSERT_EQ(WindowsRegistry::SetVeltraDisplayString("Name", "abc"), VEK_SUCCESS);
  EXPECT_EQ(WindowsRegistry::GetVeltraDisplayString("Name", value, 3), VEK_UNABLE_TO_GET_REGISTRY_VALUE);
  EXPECT_EQ(value, "preset");  // "abc" and its NUL need 4 bytes
  EXPECT_EQ(WindowsRegistry::GetVeltraDisplayString("Name", value, 4), VEK_SUCCESS);
  EXPECT_EQ(value, "abc");
  // Key and value names are case-blind; the other root is another registry.
  value.clear();
  EXPECT_EQ(WindowsRegistry::GetRegistryString("NAME", value, "software\\VELTRA DISPLAY\\calibration", 4), VEK_SUCCESS);
  EXPECT_EQ(value, "abc");
  EXPECT_EQ(WindowsRegistry::GetRegistryString("Name", value, kRegistryCalibrationKey, 4, Root::CurrentUser),
            VEK_UNABLE_TO_GET_REGISTRY_VALUE);
}

TEST_F(WindowsRegistryTest, DwordsKeepTheirTypeAndMissingKeysAreCreatedOnlyOnRequest) {
  const std::string key = "Software\\Veltra Display\\Numbers";
  test::LogCapture log;
  EXPECT_EQ(WindowsRegistry::SetRegistry(key, 7, "Count", false), VEK_UNABLE_TO_WRITE_REGISTRY_VALUE);
  EXPECT_FALSE(platform::RegistryKeyExists(Root::LocalMachine, key));
  EXPECT_TRUE(
      std::regex_match(log.Text(), std::regex("ERROR:vekWindowsRegistry, [0-9]+: Registry Key does not exists\n")))
      << log.Text();

  EXPECT_EQ(WindowsRegistry::SetRegistry(key, 4294967295ul, "Count", true), VEK_SUCCESS);
  unsigned long number = 1;
  EXPECT_TRUE(platform::RegistryReadDword(Root::LocalMachine, key, "Count", number));
  EXPECT_EQ(number, 4294967295ul);
  std::string text = "untouched";
  EXPECT_EQ(WindowsRegistry::GetRegistryString("Count", text, key, 100), VEK_UNABLE_TO_GET_REGISTRY_VALUE);
  EXPECT_EQ(text, "untouched");

  ASSERT_EQ(WindowsRegistry::SetRegistryString("Label", "12", key), VEK_SUCCESS);
  EXPECT_FALSE(platform::RegistryReadDword(Root::LocalMachine, key, "Label", number));
  EXPECT_EQ(number, 4294967295ul);
}

TEST_F(WindowsRegistryTest, SwitchesAreOnExactlyWhenTheTextStartsWithOne) {
  bool on = true, identity = true;
  KORRemoteWarpType mode = KORRemoteWarpMode3;
  std::string path = "kept";
  // No playback key at all: every getter fails and keeps its output.
  EXPECT_EQ(WindowsRegistry::GetWarpingStatus(on), VEK_UNABLE_TO_GET_REGISTRY_VALUE);
  EXPECT_EQ(WindowsRegistry::GetIdentityWarpingStatus(identity), VEK_UNABLE_TO_GET_REGISTRY_VALUE);
  EXPECT_EQ(WindowsRegistry::GetRemoteDesktopWarpingStatus(mode), VEK_UNABLE_TO_GET_REGISTRY_VALUE);
  EXPECT_EQ(WindowsRegistry::GetProjectorColorStateFile(path), VEK_UNABLE_TO_GET_REGISTRY_VALUE);
  EXPECT_TRUE(on && identity && mode == KORRemoteWarpMode3 && path == "kept");

  for (const auto& [text, expected] :
       {std::pair<const char*, bool>{"1abc", true}, {"", false}, {"0", false}, {"yes", false}, {"01", false}}) {
    PutPlayback("WARPING", text);
    on = !expected;
    EXPECT_EQ(WindowsRegistry::GetWarpingStatus(on), VEK_SUCCESS);
    EXPECT_EQ(on, expected) << '"' << text << '"';
  }

  EXPECT_EQ(WindowsRegistry::SetIdentityWarpingStatus(true), VEK_SUCCESS);
  EXPECT_EQ(WindowsRegistry::GetIdentityWarpingStatus(identity = false), VEK_SUCCESS);
  EXPECT_TRUE(identity);
  EXPECT_EQ(WindowsRegistry::SetProjectorColorStateFile("C:\\Colour States\\p1.txt"), VEK_SUCCESS);
  EXPECT_EQ(WindowsRegistry::GetProjectorColorStateFile(path), VEK_SUCCESS);
  EXPECT_EQ(path, "C:\\Colour States\\p1.txt");
}

TEST_F(WindowsRegistryTest, RemoteDesktopModeOutsideZeroToFourIsRejected) {
  KORRemoteWarpType mode = KORRemoteWarpMode2;
  for (const char* text : {"5", "-1", "2147483647", "4294967296"}) {  // the last is 0 when wrapped
    PutPlayback("RemoteDesktopWARPING", text);
    int code = WindowsRegistry::GetRemoteDesktopWarpingStatus(mode);
    EXPECT_EQ(code, VEK_UNABLE_TO_GET_REGISTRY_VALUE | VEK_CUSTOM_MESSAGE_FLAG) << text;
    EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(code), "RemoteDesktopWarp registry value out of expected range");
    EXPECT_EQ(mode, KORRemoteWarpMode2);
  }
  PutPlayback("RemoteDesktopWARPING", "4");
  EXPECT_EQ(WindowsRegistry::GetRemoteDesktopWarpingStatus(mode), VEK_SUCCESS);
  EXPECT_EQ(mode, KORRemoteWarpMode4);
  PutPlayback("RemoteDesktopWARPING", "abc");
  EXPECT_EQ(WindowsRegistry::GetRemoteDesktopWarpingStatus(mode), VEK_SUCCESS);
  EXPECT_EQ(mode, KORRemoteWarpMode0);

  EXPECT_EQ(WindowsRegistry::SetRemoteDesktopWarpingStatus(KORRemoteWarpMode3), VEK_SUCCESS);
  EXPECT_EQ(WindowsRegistry::GetRemoteDesktopWarpingStatus(mode), VEK_SUCCESS);
  EXPECT_EQ(mode, KORRemoteWarpMode3);
  EXPECT_EQ(WindowsRegistry::SetRemoteDesktopWarpingStatus(static_cast<KORRemoteWarpType>(5)),
            VEK_UNABLE_TO_WRITE_REGISTRY_VALUE | VEK_CUSTOM_MESSAGE_FLAG);
}

TEST_F(WindowsRegistryTest, EncipheredStringsHideTheTextAndReadBack) {
  const std::string key = kRegistryCalibrationKey;
  ASSERT_EQ(WindowsRegistry::SetEncryptedRegistryString("Pair", "Ab", key), VEK_SUCCESS);
  std::string stored;
  ASSERT_EQ(WindowsRegistry::GetRegistryString("Pair", stored, key, 100), VEK_SUCCESS);
  EXPECT_EQ(stored, "CB73");
  const std::string secret = "licence key: secret secret";
  ASSERT_EQ(WindowsRegistry::SetEncryptedRegistryString("Pair", secret, key), VEK_SUCCESS);
  ASSERT_EQ(WindowsRegistry::GetRegistryString("Pair", stored, key, 100), VEK_SUCCESS);
  EXPECT_EQ(stored.find("secret"), std::string::npos);
  EXPECT_EQ(stored.size(), 2 * secret.size());
  std::string plain = "kept";
  EXPECT_EQ(WindowsRegistry::GetEncryptedRegistryString("Pair", plain, key, static_cast<int>(stored.size())),
            VEK_UNABLE_TO_GET_REGISTRY_VALUE);  // the buffer counts the stored text
  EXPECT_EQ(WindowsRegistry::GetEncryptedRegistryString("Pair", plain, key, 100), VEK_SUCCESS);
  EXPECT_EQ(plain, secret);

  plain = "kept";
  for (const char* bad : {"CB7", "CBXY"}) {
    ASSERT_EQ(WindowsRegistry::SetRegistryString("Pair", bad, key), VEK_SUCCESS);
    EXPECT_EQ(WindowsRegistry::GetEncryptedRegistryString("Pair", plain, key, 100), VEK_UNABLE_TO_GET_REGISTRY_VALUE);
    EXPECT_EQ(plain, "kept");
  }
}

TEST_F(WindowsRegistryTest, LastErrorGoesToTheCompanionKeyOfTheUser) {
  float ratio = -1.0f;
  unsigned long count = 9;
  WindowsRegistry::GetCompanionFloat(L"Ratio", ratio);
  WindowsRegistry::GetCompanionDword(L"LastError", count);
  EXPECT_EQ(ratio, -1.0f);
  EXPECT_EQ(count, 9ul);
  EXPECT_FALSE(platform::RegistryKeyExists(Root::CurrentUser, kRegistryCompanionKey));

  ASSERT_EQ(WindowsRegistry::WriteLastErrorMessage(79 | 0x8000, L"Datei \u00e4 fehlt"), VEK_SUCCESS);
  WindowsRegistry::GetCompanionDword(L"LastError", count);
  EXPECT_EQ(count, 0x804Ful);
  std::string text;
  EXPECT_TRUE(platform::RegistryReadString(Root::CurrentUser, kRegistryCompanionKey, "LastErrorMessage", text));
  EXPECT_EQ(text, "Datei \xC3\xA4 fehlt");
  WindowsRegistry::GetCompanionFloat(L"LastErrorMessage", ratio);  // not a number
  EXPECT_EQ(ratio, -1.0f);
  ASSERT_TRUE(platform::RegistryWriteString(Root::CurrentUser, kRegistryCompanionKey, "Ratio", "2.5"));
  WindowsRegistry::GetCompanionFloat(L"Ratio", ratio);
  EXPECT_EQ(ratio, 2.5f);
}

#ifndef _WIN32
TEST_F(WindowsRegistryTest, StoreOnDiskKeepsTypedValuesAndFailsWhereItCannotWrite) {
  ASSERT_EQ(WindowsRegistry::SetWarpingStatus(true), VEK_SUCCESS);
  ASSERT_EQ(WindowsRegistry::SetRegistry(kRegistryPlaybackKey, 42, "Mode/2", false), VEK_SUCCESS);
  const std::string key = Store.File("LocalMachine/software/veltra display/playback/");
  EXPECT_EQ(test::ReadFile(key + "warping.value"), "REG_SZ\n1");
  EXPECT_EQ(test::ReadFile(key + "mode%2F2.value"), "REG_DWORD\n42");
  EXPECT_FALSE(std::filesystem::exists(key + ".tmp"));

  // A root below a plain file cannot be created, even by a privileged user.
  test::WriteFile(Store.File("plain"), "x");
  platform::SetEnvironmentValue("VEK_REGISTRY_DIR", Store.File("plain"));
  test::LogCapture log;
  EXPECT_EQ(WindowsRegistry::SetWarpingStatus(true), VEK_UNABLE_TO_WRITE_REGISTRY_VALUE);
  EXPECT_EQ(WindowsRegistry::WriteLastErrorMessage(3, L"x"), VEK_UNABLE_TO_WRITE_REGISTRY_VALUE);
  EXPECT_TRUE(
      std::regex_match(log.Text(), std::regex("ERROR:vekWindowsRegistry, [0-9]+: Unable to Write Registry KeyValue\n"
                                              "ERROR:vekWindowsRegistry, [0-9]+: Unable to Write  Registry Key "
                                              "Value LastError\n"
                                              "ERROR:vekWindowsRegistry, [0-9]+: Unable to Write  Registry Key "
                                              "Value LastErrorMessage\n")))
      << log.Text();
}

TEST_F(WindowsRegistryTest, DwordWriteFailuresNameTheirStep) {
  // A value that is a folder on disk cannot be replaced by a file.
  const std::string key = "Software\\Veltra Display\\Numbers";
  ASSERT_TRUE(platform::RegistryCreateKey(Root::LocalMachine, key));
  std::filesystem::create_directory(Store.File("LocalMachine/software/veltra display/numbers/count.value"));
  {
    test::LogCapture log;
    EXPECT_EQ(WindowsRegistry::SetRegistry(key, 1, "Count", false), VEK_UNABLE_TO_WRITE_REGISTRY_VALUE);
    EXPECT_TRUE(std::regex_match(log.Text(),
                                 std::regex("ERROR:vekWindowsRegistry, [0-9]+: Unable to Set Registry KeyValue\n")))
        << log.Text();
  }

  test::WriteFile(Store.File("plain"), "x");
  platform::SetEnvironmentValue("VEK_REGISTRY_DIR", Store.File("plain"));
  test::LogCapture missingRoot;
  EXPECT_EQ(WindowsRegistry::SetRegistry(key, 1, "Count", true), VEK_UNABLE_TO_WRITE_REGISTRY_VALUE);
  EXPECT_TRUE(std::regex_match(missingRoot.Text(),
                               std::regex("ERROR:vekWindowsRegistry, [0-9]+: Registry Key does not exists\n"
                                          "ERROR:vekWindowsRegistry, [0-9]+: Unable to Create Non existing "
                                          "Registry KeyValue\n")))
      << missingRoot.Text();
}

// A process given a base folder keeps the user's store there, out of the home folder.
TEST(WindowsRegistryStore, FollowsTheBaseFolderWhenNoStoreIsNamed) {
  const char* variables[] = {"VEK_REGISTRY_DIR", "VEK_BASE_DIR", "HOME", "XDG_CONFIG_HOME"};
  std::vector<std::string> previous;
  for (const char* name : variables) previous.push_back(platform::EnvironmentVariable(name));
  test::TempDirectory base, home;
  platform::SetEnvironmentValue("VEK_REGISTRY_DIR", "");
  platform::SetEnvironmentValue("VEK_BASE_DIR", base.Path().string());
  platform::SetEnvironmentValue("HOME", home.Path().string());
  platform::SetEnvironmentValue("XDG_CONFIG_HOME", "");

  EXPECT_EQ(WindowsRegistry::WriteLastErrorMessage(79, L"gone"), VEK_SUCCESS);
  std::string message;
  EXPECT_TRUE(platform::RegistryReadString(Root::CurrentUser, kRegistryCompanionKey, "LastErrorMessage", message));
  EXPECT_EQ(message, "gone");
  EXPECT_FALSE(std::filesystem::is_empty(base.Path() / "Registry" / "CurrentUser"));
  EXPECT_TRUE(std::filesystem::is_empty(home.Path()));

  for (std::size_t i = 0; i < previous.size(); ++i) platform::SetEnvironmentValue(variables[i], previous[i]);
}
#endif

}  // namespace
}  // namespace vek
