#pragma once

#include "Core/Update/Updater.h"
#include "Support/LoopbackServer.h"
#include "Support/StandInTools.h"
#include "Support/TemporaryFolder.h"

#include <QJsonObject>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace brimvale::testing {

/// What an update did to the application and wrote to the log, in order. The application refuses to end, and
/// does not even when it is ended.
class UpdateRecord : public ApplicationQuit {
public:
    void closeAllWindows() override { add("close windows"); }
    void terminate() override { add("terminate"); }
    void exitNow() override { add("exit"); }

    void add(const std::string &line) {
        const std::lock_guard guard(lock_);
        lines_.push_back(line);
    }
    [[nodiscard]] std::vector<std::string> lines() const {
        const std::lock_guard guard(lock_);
        return lines_;
    }

private:
    mutable std::mutex lock_;
    std::vector<std::string> lines_;
};

/// A server with a feed of version 1.4.2 (build 42) and its archive, an installed application of build 41,
/// and the tools.
class UpdateScene : public ::testing::Test {
protected:
    UpdateScene();

    /// Has the server answer with the feed as it is now.
    void publish();

    TemporaryFolder folder;
    LoopbackServer server;
    std::string archive;
    QJsonObject feed;
    std::shared_ptr<UpdateRecord> record = std::make_shared<UpdateRecord>();
    UpdateEnvironment environment = UpdateEnvironment::current();
};

} // namespace brimvale::testing
