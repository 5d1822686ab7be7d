#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace brimvale::testing {

/// Takes the addresses of one scheme that the window opens, in place of the system.
class OpenedAddresses : public QObject {
    Q_OBJECT

public:
    explicit OpenedAddresses(const QString &scheme) : scheme_(scheme) {
        QDesktopServices::setUrlHandler(scheme_, this, "open");
    }
    ~OpenedAddresses() override { QDesktopServices::unsetUrlHandler(scheme_); }

    QStringList all;

public slots:
    void open(const QUrl &address) { all.append(address.toString()); }

private:
    QString scheme_;
};

} // namespace brimvale::testing
