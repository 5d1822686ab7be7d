#include "CommandLine/Program.h"

#include "Base/FileURL.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace brimvale::testing {

namespace {

using File = std::unique_ptr<std::FILE, decltype([](std::FILE *file) { std::fclose(file); })>;

void require(bool isDone, const char *what) {
    if (!isDone)
        throw std::system_error(errno, std::generic_category(), what);
}

std::string contentOf(std::FILE *file) {
    std::string content;
    std::rewind(file);
    std::array<char, 65536> part{};
    while (const std::size_t count = std::fread(part.data(), 1, part.size(), file))
        content.append(part.data(), count);
    return content;
}

Outcome runFile(const std::string &program, const std::vector<std::string> &arguments,
                const std::function<void()> &prepare) {
    const File out(std::tmpfile());
    const File err(std::tmpfile());
    require(out != nullptr && err != nullptr, "tmpfile");
    std::vector<char *> words{const_cast<char *>(program.c_str())};
    for (const std::string &argument : arguments)
        words.push_back(const_cast<char *>(argument.c_str()));
    words.push_back(nullptr);

    const pid_t child = fork();
    require(child >= 0, "fork");
    if (child == 0) {
        // Whatever started the tests may ignore these, and every child would.
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
        setenv("LC_ALL", "C", 1);
        dup2(fileno(out.get()), STDOUT_FILENO);
        dup2(fileno(err.get()), STDERR_FILENO);
        prepare();
        execv(program.c_str(), words.data());
        _exit(127);
    }
    int status = 0;
    require(waitpid(child, &status, 0) == child, "waitpid");
    return {WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status), contentOf(out.get()),
            contentOf(err.get())};
}

/// Where the program was built, unless the tests are told that it has moved.
std::string programPath() {
    const char *moved = std::getenv("BRIMVALECTL");
    return moved != nullptr ? moved : BRIMVALECTL;
}

Outcome runProgramOn(const std::string &system, const std::string &root, std::vector<std::string> arguments,
                     const std::function<void()> &prepare) {
    arguments.insert(arguments.begin(), {"--system", system});
    const std::string folder(FileURL(programPath()).parent().path());
    return runFile(joinPath(folder, "brimvalectl-in-tests"), arguments, [&] {
        setenv("BRIMVALE_TEST_ROOT", root.c_str(), 1);
        prepare();
    });
}

} // namespace

Outcome runProgram(const std::vector<std::string> &arguments, const std::function<void()> &prepare) {
    return runFile(programPath(), arguments, prepare);
}

Outcome runProgramOnMac(const std::string &root, const std::vector<std::string> &arguments,
                        const std::function<void()> &prepare) {
    return runProgramOn("macos", root, arguments, prepare);
}

Outcome runProgramOnLinux(const std::string &root, const std::vector<std::string> &arguments,
                          const std::function<void()> &prepare) {
    return runProgramOn("linux", root, arguments, prepare);
}

Outcome runProgramUnprivileged(const std::string &folder, const std::vector<std::string> &arguments) {
    // The build folder may lie where other users cannot go.
    const std::string program = joinPath(folder, "brimvalectl");
    std::filesystem::copy_file(programPath(), program, std::filesystem::copy_options::overwrite_existing);
    return runFile(program, arguments, [] {
        constexpr unsigned nobody = 65534;
        if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
            _exit(126);
    });
}

std::function<void()> inFolder(const std::string &path) {
    return [path] { require(chdir(path.c_str()) == 0, "chdir"); };
}

std::function<void()> inHome(const std::string &path) {
    return [path] {
        setenv("HOME", path.c_str(), 1);
        require(chdir(path.c_str()) == 0, "chdir");
    };
}

std::function<void()> pending(int signal) {
    return [signal] {
        sigset_t blocked{};
        sigemptyset(&blocked);
        sigaddset(&blocked, signal);
        sigprocmask(SIG_BLOCK, &blocked, nullptr);
        std::raise(signal);
    };
}

std::function<void()> withInput(const std::string &bytes) {
    return [bytes] {
        std::FILE *file = std::tmpfile();
        require(file != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size(),
                "tmpfile");
        std::rewind(file);
        dup2(fileno(file), STDIN_FILENO);
    };
}

QJsonDocument jsonIn(const Outcome &outcome) {
    return QJsonDocument::fromJson(QByteArray::fromStdString(outcome.out));
}

std::vector<std::string> pathsIn(const QJsonValue &array) {
    std::vector<std::string> paths;
    for (const QJsonValue &one : array.toArray())
        paths.push_back((one.isObject() ? one["url"] : one).toString().toStdString());
    return paths;
}

} // namespace brimvale::testing
