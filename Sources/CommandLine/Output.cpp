#include "CommandLine/Output.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <unistd.h>

namespace brimvale::commandLine {

namespace {

constexpr std::size_t bufferSize = 65'536;

} // namespace

Output::Output(std::FILE *stream) : stream_(stream) {
    buffer_.reserve(bufferSize);
}

bool Output::isStyled() const {
    const char *noColor = std::getenv("NO_COLOR");
    const char *terminal = std::getenv("TERM");
    return (noColor == nullptr || *noColor == '\0') && terminal != nullptr &&
           std::string_view(terminal) != "dumb" && isatty(fileno(stream_)) == 1;
}

void Output::write(std::string_view text) {
    if (buffer_.size() + text.size() > bufferSize) {
        pass(buffer_);
        buffer_.clear();
    }
    if (text.size() > bufferSize)
        pass(text);
    else
        buffer_ += text;
}

void Output::flush() {
    pass(buffer_);
    buffer_.clear();
    if (!failure_)
        check(std::fflush(stream_) == 0);
}

std::optional<FileError> Output::finish() {
    flush();
    // Some file systems report only now that the disk is full.
    check(std::fclose(stream_) == 0);
    return failure_;
}

void Output::pass(std::string_view text) {
    if (!failure_ && !text.empty())
        check(std::fwrite(text.data(), 1, text.size(), stream_) == text.size());
}

void Output::check(bool isDone) {
    if (!isDone && !failure_)
        failure_ = FileError::posix(errno);
}

} // namespace brimvale::commandLine
