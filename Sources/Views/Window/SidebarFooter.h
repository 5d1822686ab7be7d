#pragma once

#include "Core/Storage/VolumeInfo.h"

#include <QString>
#include <QWidget>
#include <cstdint>
#include <optional>

class QLabel;
class QPushButton;

namespace brimvale {

class CapacityBar;

/// What stands at the bottom of the sidebar on every page: how full the volume is, what has been freed, and
/// the way to the permission that is missing. Shows only what there is to say, and hides when that is
/// nothing.
class SidebarFooter : public QWidget {
    Q_OBJECT

public:
    explicit SidebarFooter(QWidget *parent = nullptr);

    void setVolume(const std::optional<VolumeInfo> &volume);
    /// What this session has freed, in bytes; shown when above 0.
    void setFreed(std::int64_t bytes);
    /// Whether the program has Full Disk Access; while it has not, a button opens the system's settings.
    void setHasFullDiskAccess(bool hasAccess);

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void showWhatThereIs();
    void showName();
    void tintIcon();

    QString volumeName_;
    QWidget *volume_;
    QLabel *name_;
    CapacityBar *bar_;
    QLabel *free_;
    QLabel *freed_;
    QPushButton *grantAccess_;
};

} // namespace brimvale
