#include "jet_reader.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "seluvorne/error.h"

namespace seluvorne::legacy {

namespace {

constexpr const char* kProgramName = "seluvorne-jet-reader";
constexpr std::size_t kStderrKept = 4096;  // enough for libmdb's warnings

[[noreturn]] void Refuse(std::string_view shown_path, const std::string& reason) {
  Error error = MakeError(errc::kUnrecognizedFormat, shown_path);
  throw Error(error.number, error.source,
              error.description + " It is a legacy (Jet) file that could not be read: " + reason);
}

struct ChildResult {
  std::string out, err;
  int status = 0;
  bool timed_out = false, too_much_output = false;
};

void CloseIfOpen(int& descriptor) {
  if (descriptor >= 0) ::close(descriptor);
  descriptor = -1;
}

// Runs `program file` with the limits and collects what it writes. Only
// async-signal-safe calls happen between fork and exec: the host may have
// threads.
ChildResult RunChild(const std::filesystem::path& program, const std::filesystem::path& file,
                     const ReaderLimits& limits, std::string_view shown_path) {
  int out_pipe[2], err_pipe[2];
  if (::pipe2(out_pipe, O_CLOEXEC) != 0) Refuse(shown_path, "no pipe for the reader");
  if (::pipe2(err_pipe, O_CLOEXEC) != 0) {
    ::close(out_pipe[0]);
    ::close(out_pipe[1]);
    Refuse(shown_path, "no pipe for the reader");
  }
  std::string program_text = program.string(), file_text = file.string();
  char* argv[] = {program_text.data(), file_text.data(), nullptr};
  rlimit memory{limits.memory_bytes, limits.memory_bytes};
  auto seconds = static_cast<rlim_t>(
      std::chrono::duration_cast<std::chrono::seconds>(limits.time).count() + 1);
  rlimit cpu{seconds, seconds};
  rlimit no_core{0, 0};

  pid_t child = ::fork();
  if (child == 0) {
    ::setpgid(0, 0);  // its own group, so that a timeout ends whatever it started
    ::dup2(out_pipe[1], STDOUT_FILENO);
    ::dup2(err_pipe[1], STDERR_FILENO);
    int null_input = ::open("/dev/null", O_RDONLY);
    if (null_input >= 0) ::dup2(null_input, STDIN_FILENO);
    ::setrlimit(RLIMIT_AS, &memory);
    ::setrlimit(RLIMIT_CPU, &cpu);
    ::setrlimit(RLIMIT_CORE, &no_core);
    ::execv(argv[0], argv);
    ::_exit(127);
  }
  ::close(out_pipe[1]);
  ::close(err_pipe[1]);
  if (child < 0) {
    ::close(out_pipe[0]);
    ::close(err_pipe[0]);
    Refuse(shown_path, "the reader could not be started");
  }

  ChildResult result;
  int out_fd = out_pipe[0], err_fd = err_pipe[0];
  auto deadline = std::chrono::steady_clock::now() + limits.time;
  char buffer[1 << 16];
  while (out_fd >= 0 || err_fd >= 0) {
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) {
      result.timed_out = true;
      break;
    }
    pollfd watched[2] = {{out_fd, POLLIN, 0}, {err_fd, POLLIN, 0}};
    int ready = ::poll(watched, 2, static_cast<int>(left.count()));
    if (ready < 0 && errno != EINTR) break;
    if (ready <= 0) continue;
    for (int i = 0; i < 2; ++i) {
      if (watched[i].fd < 0 || watched[i].revents == 0) continue;
      ssize_t got = ::read(watched[i].fd, buffer, sizeof buffer);
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0) {
        CloseIfOpen(i == 0 ? out_fd : err_fd);
        continue;
      }
      if (i == 0) {
        result.out.append(buffer, static_cast<std::size_t>(got));
        if (result.out.size() > limits.output_bytes) result.too_much_output = true;
      } else if (result.err.size() < kStderrKept) {
        result.err.append(buffer, static_cast<std::size_t>(got));
      }
    }
    if (result.too_much_output) break;
  }
  CloseIfOpen(out_fd);
  CloseIfOpen(err_fd);
  if (result.timed_out || result.too_much_output) {
    ::kill(-child, SIGKILL);
    ::kill(child, SIGKILL);
  }
  while (::waitpid(child, &result.status, 0) < 0 && errno == EINTR) {
  }
  return result;
}

std::string FirstLine(const std::string& text) {
  std::string line = text.substr(0, text.find('\n'));
  return line.size() > 200 ? line.substr(0, 200) : line;
}

std::filesystem::path BesideThisBinary() {
  Dl_info info{};
  if (::dladdr(reinterpret_cast<void*>(&ReaderProgram), &info) == 0 || !info.dli_fname) return {};
  std::error_code ignored;
  auto binary = std::filesystem::canonical(info.dli_fname, ignored);
  if (binary.empty()) return {};
  return binary.parent_path() / kProgramName;
}

}  // namespace

ReaderLimits& Limits() {
  static ReaderLimits limits;
  return limits;
}

std::filesystem::path ReaderProgram() {
  if (const char* chosen = std::getenv("SELUVORNE_JET_READER"); chosen && *chosen) return chosen;
  std::error_code ignored;
  auto beside = BesideThisBinary();
  if (!beside.empty() && std::filesystem::is_regular_file(beside, ignored)) return beside;
  return SELUVORNE_JET_READER_BUILD_PATH;
}

JetFile ReadJetFile(const std::filesystem::path& path, std::string_view shown_path, bool salvage) {
  std::filesystem::path program = ReaderProgram();
  if (::access(program.c_str(), X_OK) != 0)
    Refuse(shown_path, "the reader program " + program.string() + " is missing");
  const ReaderLimits limits = Limits();
  ChildResult result = RunChild(program, path, limits, shown_path);

  if (result.timed_out)
    Refuse(shown_path,
           "the reader took longer than " + std::to_string(limits.time.count()) + " ms");
  if (result.too_much_output) Refuse(shown_path, "the reader wrote more than the limit");
  JetFile file;
  try {
    file = ParseJetStream(result.out);
  } catch (const StreamError& failure) {
    std::string reason = failure.what();
    if (WIFSIGNALED(result.status))
      reason = "the reader ended with signal " + std::to_string(WTERMSIG(result.status)) +
               (WTERMSIG(result.status) == SIGXCPU ? " (time limit)" : "");
    if (!result.err.empty()) reason += " (" + FirstLine(result.err) + ")";
    Refuse(shown_path, reason);
  }
  if (!WIFEXITED(result.status) || WEXITSTATUS(result.status) != 0)
    Refuse(shown_path, "the reader failed after a complete stream");
  if (!salvage) {
    if (const JetTable* table = FirstIncompleteTable(file)) {
      std::string reason = "table " + table->name + " records " +
                           std::to_string(table->recorded_rows) + " rows, of which " +
                           std::to_string(table->rows.size()) + " could be read";
      if (!result.err.empty()) reason += " (" + FirstLine(result.err) + ")";
      Refuse(shown_path, reason);
    }
  }
  return file;
}

}  // namespace seluvorne::legacy
