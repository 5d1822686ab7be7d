#pragma once

#include "Core/Storage/VolumeInfo.h"

#include <QString>
#include <QWidget>
#include <cstdint>
#include <optional>

class QLabel;
class QPushButton;
class QToolButton;

namespace brimvale {

class CapacityBar;

/// The bottom of the sidebar on every page: the used space, the space freed, a button for the missing
/// permission, and a quiet line about an update. Shows only parts with content, and hides if there are none.
class SidebarFooter : public QWidget {
    Q_OBJECT

public:
    explicit SidebarFooter(QWidget *parent = nullptr);

    void setVolume(const std::optional<VolumeInfo> &volume);
    /// The bytes freed in this session, and those moved to the Trash; each is shown when above 0.
    void setFreed(std::int64_t bytes, std::int64_t inTrash);
    /// Whether the program has Full Disk Access; if not, a button opens the system's settings.
    void setHasFullDiskAccess(bool hasAccess);
    /// A line about an update; empty for none. A click on it emits `updateAsked`.
    void setUpdate(const QString &line);

signals:
    void updateAsked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void showWhatThereIs();
    void showName();
    void showUpdate();
    void tintIcons();

    QString volumeName_;
    QString updateLine_;
    QWidget *volume_;
    QLabel *name_;
    CapacityBar *bar_;
    QLabel *free_;
    QLabel *freed_;
    QLabel *trashed_;
    QPushButton *grantAccess_;
    QToolButton *update_;
};

} // namespace brimvale
