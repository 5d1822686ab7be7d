#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace brimvale {

/// The notice of a window, before it first looks at the disk, that the system will ask about each protected
/// folder. Appears once, and only while Full Disk Access is missing.
class AccessNotice : public QObject {
    Q_OBJECT

public:
    explicit AccessNotice(QWidget &window);

    /// Calls `look`, if necessary after the notice of the page's window. Does not call it if the user cancels
    /// or the page is destroyed. A window without a notice calls it at once.
    static void beforeLook(QWidget &page, std::function<void()> look);

private:
    [[nodiscard]] bool isDue() const;
    void show(QWidget &page, std::function<void()> look);

    QWidget &window_;
    bool wasShown_ = false;
};

} // namespace brimvale
