#include "zanfm/message_view.h"

#include <unistd.h>

#include <cstdio>
#include <thread>

namespace zanfm {

namespace {

// Owns a file descriptor (-1 for none) and closes it.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool valid() const { return fd_ >= 0; }
  int get() const { return fd_; }
  void Close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
  }

 private:
  int fd_;
};

// The value of attribute name in an XML line, "" when absent.
std::string Attribute(const std::string& line, const std::string& name) {
  std::string key = " " + name + "=\"";
  std::string::size_type at = line.find(key);
  if (at == std::string::npos) return "";
  at += key.size();
  std::string::size_type end = line.find('"', at);
  return line.substr(at, end == std::string::npos ? std::string::npos : end - at);
}

void WriteAll(int fd, const std::string& text) {
  const char* p = text.data();
  size_t left = text.size();
  while (left > 0) {
    ssize_t n = ::write(fd, p, left);
    if (n <= 0) return;
    p += n;
    left -= static_cast<size_t>(n);
  }
}

// Reads the pipe until it closes and renders each line onto out.
void Render(int in, int out, bool raw) {
  std::string pending;
  bool progressShown = false;
  char buffer[4096];
  auto show = [&](const std::string& line) {
    if (raw) {
      WriteAll(out, line + "\n");
      return;
    }
    bool progress = false;
    std::string text = RenderLine(line, &progress);
    if (progress) {
      WriteAll(out, "\r\033[K" + text);
      progressShown = true;
      return;
    }
    if (progressShown) WriteAll(out, "\n");
    progressShown = false;
    if (!text.empty()) WriteAll(out, text + "\n");
  };
  for (;;) {
    ssize_t n = ::read(in, buffer, sizeof buffer);
    if (n <= 0) break;
    pending.append(buffer, static_cast<size_t>(n));
    std::string::size_type end;
    while ((end = pending.find('\n')) != std::string::npos) {
      show(pending.substr(0, end));
      pending.erase(0, end + 1);
    }
  }
  if (!pending.empty()) show(pending);
  if (progressShown) WriteAll(out, "\n");
}

}  // namespace

std::string RenderLine(const std::string& line, bool* progress) {
  *progress = false;
  if (line.rfind("<set_msgbox", 0) == 0) {
    if (Attribute(line, "type") == "clear") return "";
    std::string msg = Attribute(line, "msg");
    std::string label = Attribute(line, "label");
    if (msg.find("% )") != std::string::npos) {
      *progress = true;
      return msg;
    }
    return label.empty() ? msg : label + ": " + msg;
  }
  if (line.rfind("<set_apictrl", 0) == 0 || line.rfind("<filefunc", 0) == 0) return "";
  return line;
}

int RunShowingMessages(bool raw, const std::function<int()>& fn) {
  std::fflush(stdout);
  int fds[2];
  if (::pipe(fds) != 0) return fn();
  Descriptor readEnd(fds[0]);
  Descriptor writeEnd(fds[1]);
  Descriptor saved(::dup(STDOUT_FILENO));
  if (!saved.valid() || ::dup2(writeEnd.get(), STDOUT_FILENO) < 0) return fn();
  writeEnd.Close();
  std::thread reader(Render, readEnd.get(), saved.get(), raw);
  int result = fn();
  std::fflush(stdout);
  ::dup2(saved.get(), STDOUT_FILENO);  // closes the pipe's last write end
  reader.join();
  return result;
}

}  // namespace zanfm
