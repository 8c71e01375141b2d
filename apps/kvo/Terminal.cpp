#include "apps/kvo/Terminal.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kvo {
namespace {

std::string_view Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

bool HasColour(int descriptor) {
  return Environment("NO_COLOR").empty() && Environment("TERM") != "dumb" &&
         isatty(descriptor) == 1;
}

// Returns `text`, coloured from `begin` to `end` if the stream is a terminal.
std::string Coloured(int descriptor, page::Severity severity, std::string text, std::size_t begin,
                     std::size_t end) {
  if (!HasColour(descriptor)) return text;
  text.insert(end, "\x1b[0m");
  text.insert(begin, severity == page::Severity::error ? "\x1b[1;31m" : "\x1b[1;33m");
  return text;
}

// Replaces control characters in text for a terminal, which could otherwise take parts of a page as
// commands to move the cursor, change the title or send a reply.
std::string Harmless(int descriptor, std::string_view text) {
  if (isatty(descriptor) != 1) return std::string(text);
  constexpr std::string_view replacement = "\xEF\xBF\xBD";
  std::string harmless;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
    const bool twoBytes = byte == 0xC2 && next >= 0x80 && next <= 0x9F;
    if (twoBytes || (byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F)
      harmless += replacement;
    else
      harmless += text[i];
    if (twoBytes) ++i;
  }
  return harmless;
}

thread_local HeldOutput* t_held = nullptr;
bool g_statusShown = false;  // on the terminal; only the main thread prints

void RemoveStatus() {
  if (g_statusShown) std::fputs("\r\x1b[K", stderr);
  g_statusShown = false;
}

void WriteToStderr(std::string_view text) {
  if (t_held != nullptr) return t_held->Add(Stream::error, text);
  RemoveStatus();
  std::fflush(stdout);  // keeps the order of the two streams
  std::fwrite(text.data(), 1, text.size(), stderr);
}

void OutputFailed() {
  throw Failure(Say({"Die Ausgabe konnte nicht geschrieben werden: {}. Ist noch Platz frei?",
                     "The output could not be written: {}. Is there space left?"},
                    {std::strerror(errno)}));
}

void PrintAsIs(std::string_view text) {
  if (t_held != nullptr) return t_held->Add(Stream::output, text);
  RemoveStatus();
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) OutputFailed();
}

}  // namespace

void PrintError(std::string_view message) {
  constexpr std::string_view program = "kvo: ";
  std::string line(program);
  line += Say({"Fehler:", "error:"});
  const std::size_t end = line.size();
  line += ' ';
  line += Harmless(STDERR_FILENO, message);
  line += '\n';
  WriteToStderr(Coloured(STDERR_FILENO, page::Severity::error, line, program.size(), end));
}

void Tell(std::string_view line) { WriteToStderr(Harmless(STDERR_FILENO, line) + '\n'); }

bool IsStatusRewritten() { return isatty(STDERR_FILENO) == 1 && Environment("TERM") != "dumb"; }

void ShowStatus(std::string_view line) {
  if (t_held != nullptr) return;  // one page of many
  if (!IsStatusRewritten()) return Tell(line);
  RemoveStatus();
  std::fflush(stdout);
  const std::string text = Harmless(STDERR_FILENO, line);
  std::fwrite(text.data(), 1, text.size(), stderr);
  g_statusShown = true;
}

HeldOutput::HeldOutput() { t_held = this; }
HeldOutput::~HeldOutput() { t_held = nullptr; }

void HeldOutput::Add(Stream stream, std::string_view text) {
  if (!pieces_.empty() && pieces_.back().stream == stream)
    pieces_.back().text += text;
  else
    pieces_.push_back({stream, std::string(text)});
}

void Print(const HeldOutput::Pieces& pieces) {
  for (const auto& [stream, text] : pieces) {
    if (stream == Stream::output)
      PrintAsIs(text);
    else
      WriteToStderr(text);
  }
}

void PrintOutOfMemory() {
  const std::string_view line = Localized{"kvo: Fehler: Der Speicher reicht nicht aus.\n",
                                          "kvo: error: There is not enough memory.\n"}
                                    .In(UserLanguage());
  WriteToStderr(line);
}

void ShowProblems(Stream stream, std::string_view file, const page::Problems& problems) {
  for (const page::Problem& problem : page::Told(problems))
    ShowLine(stream, file, problem.severity, page::Describe(problem, file, UserLanguage()));
}

void ShowLine(Stream stream, std::string_view file, page::Severity severity, std::string line) {
  const int descriptor = stream == Stream::output ? STDOUT_FILENO : STDERR_FILENO;
  line = Harmless(descriptor, line + '\n');
  const std::size_t begin = line.find(": ", file.size()) + 2;
  line = Coloured(descriptor, severity, line, begin, line.find(':', begin) + 1);
  if (stream == Stream::output) {
    PrintAsIs(line);
  } else {
    WriteToStderr(line);
  }
}

void Print(std::string_view text) { PrintAsIs(Harmless(STDOUT_FILENO, text)); }

void FlushOutput() {
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) OutputFailed();
}

}  // namespace kvo
