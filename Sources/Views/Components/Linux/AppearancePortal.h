#pragma once

#include "Views/Components/SystemAppearance.h"

#include <QObject>

class QDBusMessage;

namespace brimvale {

/// Asks the desktop's portal for the settings of colours: at once, when they change, and when the portal
/// starts. https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Settings.html
class AppearancePortal : public QObject {
    Q_OBJECT

public:
    explicit AppearancePortal(QObject *parent);

signals:
    /// Never emitted without a session bus, without a portal, or if that answers too late.
    void answered(const SystemAppearance &appearance);

private slots:
    void ask();

private:
    void read(const QDBusMessage &answer);
};

} // namespace brimvale
