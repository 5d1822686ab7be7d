#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QString>
#include <QVariant>
#include <functional>
#include <vector>

namespace brimvale::testing {

/// Connects to a session bus of the tests' own, under this name. The programs that Qt connects to the session
/// bus are on it too, until the test program ends. Not connected where no bus can be started.
[[nodiscard]] QDBusConnection onPrivateBus(const QString &name);

/// A service of a desktop that notes its calls and gives the answers of the test.
class FakeService : public QDBusVirtualObject {
public:
    /// The answer to a call; nothing where it does not answer.
    using Answer = std::function<QVariantList(const QDBusMessage &)>;

    /// Connects it as `service`, at `path` and all paths below.
    FakeService(const QString &service, const QString &path);
    ~FakeService() override;

    [[nodiscard]] bool isConnected() const { return isConnected_; }
    [[nodiscard]] QDBusConnection &connection() { return connection_; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    std::vector<QDBusMessage> calls;
    QMap<QString, Answer> answers; ///< by the name of the method

private:
    QDBusConnection connection_;
    QString service_;
    bool isConnected_;
};

} // namespace brimvale::testing
