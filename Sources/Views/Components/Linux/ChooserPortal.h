#pragma once

#include "Views/Components/DesktopDialog.h"

#include <QDBusMessage>
#include <QObject>
#include <QString>

namespace brimvale {

/// One dialog of the desktop's portal. Deletes itself when the user has answered, and withdraws the question
/// when it is destroyed before.
/// https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.FileChooser.html
class ChooserPortal : public QObject {
    Q_OBJECT

public:
    /// Asks whether there is such a portal, and then the user.
    ChooserPortal(QWidget &asking, DesktopDialog dialog);
    ~ChooserPortal() override;

private slots:
    void finish(const QDBusMessage &response);

private:
    void begin(const QDBusMessage &version);
    void ask();
    void giveUp();

    DesktopDialog dialog_;
    QString window_;  ///< as portals name it; empty if they cannot
    QString request_; ///< the path of the question; empty while there is none
};

} // namespace brimvale
