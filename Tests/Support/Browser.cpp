#include "Support/Browser.h"

#include "Core/Text/Shell.h"

#include <chrono>
#include <filesystem>

namespace brimvale::testing {

std::optional<std::string> documentAfterLoading(const std::string &path, const TemporaryFolder &folder) {
    const std::string browser = "/usr/bin/chromium";
    if (!std::filesystem::exists(browser))
        return std::nullopt;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(100);
    // The sandbox does not start for root, nor where user namespaces are not permitted.
    const auto result = Shell::runWithStatus(
        browser,
        {"--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
         "--user-data-dir=" + folder.makeFolder("profile"), "--virtual-time-budget=3000", "--dump-dom",
         "file://" + path},
        StandardError::withOutput, [&] { return std::chrono::steady_clock::now() > end; });
    if (!result)
        return std::nullopt;
    const std::string &output = result->output;
    const std::size_t begin = output.find("<!DOCTYPE html>"); // behind whatever it complains about
    return begin == std::string::npos ? std::nullopt : std::optional(output.substr(begin));
}

} // namespace brimvale::testing
