#include "vekOptionFile.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>

#include "vekErrorCodes.h"
#include "vekFileContents.h"
#include "vekOutputMessages.h"
#include "vekPlatform.h"

namespace vek {

namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string FirstToken(const std::string& line) {
  std::size_t start = line.find_first_not_of(OptionFile::kDelimiters);
  if (start == std::string::npos) return "";
  return line.substr(start, line.find_first_of(OptionFile::kDelimiters, start) - start);
}

// The start of the n-th token (0-based) in the line, or npos.
std::size_t TokenStart(const std::string& line, int n) {
  std::size_t at = line.find_first_not_of(OptionFile::kDelimiters);
  for (int i = 0; i < n && at != std::string::npos; ++i)
    at = line.find_first_not_of(OptionFile::kDelimiters, line.find_first_of(OptionFile::kDelimiters, at));
  return at;
}

// The rewrite is part of the option store: its messages name the store as their source.
constexpr char kReportSource[] = "vekConfigurationDatabase";

void ReportRewriteError(int line, const std::string& text) {
  OutputWindowError((LocationPrefix("ERROR:", kReportSource, line) + text + "\n").c_str());
}

std::string WithoutTrailingCarriageReturn(std::string line) {
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

}  // namespace

int OptionFile::GetFileLines(const std::string& file, std::vector<std::string>& lines) {
  lines.clear();
  std::unique_ptr<std::FILE, FileCloser> in(std::fopen(file.c_str(), "rb"));
  if (!in) return VEK_FILE_NOT_FOUND;
  char buffer[kLineBufferSize];
  while (std::fgets(buffer, kLineBufferSize, in.get())) {
    // A read that reached the end of the file produced an unterminated last line: not kept.
    if (std::feof(in.get())) break;
    std::string line = buffer;
    if (!line.empty() && line.back() == '\n') {
      line.pop_back();
    } else if (!line.empty() && line.back() == '\r') {
      // The buffer filled up just before the LF of a CR LF line end: the line still fits.
      const int next = std::fgetc(in.get());
      if (next != '\n' && next != EOF) std::ungetc(next, in.get());
      if (next == EOF) break;
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
  }
  // A directory opens for reading on some systems, and then fails at the first read.
  if (!std::ferror(in.get())) return VEK_SUCCESS;
  lines.clear();
  return VEK_FILE_NOT_FOUND;
}

void OptionFile::Tokenize(const std::string& text, std::vector<std::string>& tokens, const std::string& delimiters) {
  tokens.clear();
  std::size_t start = text.find_first_not_of(delimiters);
  while (start != std::string::npos) {
    std::size_t end = text.find_first_of(delimiters, start);
    tokens.push_back(text.substr(start, end - start));
    start = end == std::string::npos ? end : text.find_first_not_of(delimiters, end);
  }
}

bool OptionFile::IsComment(const std::string& line) { return !line.empty() && line[0] == '#'; }

int OptionFile::GetLastMatchingLine(const std::string& file, const std::string& key, std::string& line) {
  line.clear();
  std::vector<std::string> lines;
  int result = GetFileLines(file, lines);
  if (result != VEK_SUCCESS) return result;
  for (const std::string& candidate : lines)
    if (FirstToken(candidate) == key) line = WithoutTrailingCarriageReturn(candidate);
  return VEK_SUCCESS;
}

int OptionFile::ParseOptionLine(const std::string& line, std::string& valueText) {
  std::string text = WithoutTrailingCarriageReturn(line);
  std::vector<std::string> tokens;
  Tokenize(text, tokens);
  if (tokens.size() < 2) return VEK_FILE_NOT_FORMATTED_PROPERLY;
  if (tokens.size() == 2)
    valueText.clear();
  else if (tokens.size() == 3)
    valueText = tokens[2];
  else
    valueText = text.substr(TokenStart(text, 2));
  return VEK_SUCCESS;
}

int OptionFile::ParseOptionInfoLine(const std::string& line, std::string& name, std::string& type, int& visibility,
                                    std::string& defaultText, std::string& minimum, std::string& maximum) {
  std::string text = WithoutTrailingCarriageReturn(line);
  std::vector<std::string> tokens;
  Tokenize(text, tokens);
  if (tokens.size() < 3) return VEK_FILE_NOT_FORMATTED_PROPERLY;
  char* end = nullptr;
  long parsed = std::strtol(tokens[2].c_str(), &end, 10);
  if (end == tokens[2].c_str()) return VEK_INVALID_PARAMETERS;
  name = tokens[0];
  type = tokens[1];
  visibility = static_cast<int>(parsed);
  defaultText.clear();
  minimum.clear();
  maximum.clear();
  bool scalar = type == "Int" || type == "Float" || type == "Double" || type == "Bool";
  if (scalar) {
    if (tokens.size() > 3) defaultText = tokens[3];
    if (tokens.size() > 4) minimum = tokens[4];
    if (tokens.size() > 5) maximum = tokens[5];
  } else if (tokens.size() > 3) {
    defaultText = text.substr(TokenStart(text, 3));
  }
  return VEK_SUCCESS;
}

int OptionFile::ReplaceContent(const std::string& file, const std::string& content) {
  std::string bytes;
  const int status = FileContents::TextBytes(content, bytes);
  if (status != VEK_SUCCESS) return status;
  switch (platform::ReplaceFileContents(file, bytes)) {
    case platform::FileReplacement::Done:
      return VEK_SUCCESS;
    case platform::FileReplacement::NotWritten:
      ReportRewriteError(793, "Failure writing to " + file + "!");
      break;
    case platform::FileReplacement::NotReplaced:
      break;
  }
  // The rewrite's one code for a file it could not put in place, whatever stood in the way.
  return VEK_UNABLE_TO_COPY_FILE;
}

int OptionFile::AddOrModifyOneLine(const std::string& file, const std::string& key, const std::string& newLine) {
  if (file.empty()) return VEK_FILE_NOT_FOUND;
  platform::FileLock otherProcesses(file + ".lock");
  std::vector<std::string> lines;
  if (GetFileLines(file, lines) != VEK_SUCCESS) ReportRewriteError(788, file + " could not be opened for reading!");
  std::string content;
  bool matched = false;
  for (const std::string& line : lines) {
    if (FirstToken(line) != key) {
      content += line + "\n";
    } else if (!matched) {
      content += newLine;
      matched = true;
    }
  }
  if (!matched) content += newLine;
  return ReplaceContent(file, content);
}

int OptionFile::MergeOptionInfoFiles(const std::string& first, const std::string& second, const std::string& result) {
  std::vector<std::string> firstLines, secondLines;
  GetFileLines(first, firstLines);
  GetFileLines(second, secondLines);
  std::map<std::string, std::string> fromSecond;
  std::vector<std::string> secondOrder;
  for (const std::string& line : secondLines) {
    std::string name = FirstToken(line);
    if (name.empty() || name[0] == '#') continue;
    if (!fromSecond.count(name)) secondOrder.push_back(name);
    fromSecond[name] = line;
  }
  std::string content;
  std::set<std::string> written;
  for (const std::string& line : firstLines) {
    std::string name = FirstToken(line);
    auto replacement = fromSecond.find(name);
    if (name.empty() || name[0] == '#' || replacement == fromSecond.end()) {
      content += line + "\n";
    } else if (written.insert(name).second) {
      content += replacement->second + "\n";
    }
  }
  for (const std::string& name : secondOrder)
    if (!written.count(name)) content += fromSecond[name] + "\n";
  platform::FileLock otherProcesses(result + ".lock");
  return ReplaceContent(result, content);
}

}  // namespace vek
