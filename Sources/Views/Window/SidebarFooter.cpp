#include "Views/Window/SidebarFooter.h"

#include "Catalogs/Words.h"
#include "Views/Components/CapacityBar.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PrivacySettings.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Components/Theme.h"
#include "Views/Window/SpaceTexts.h"

#include <QEvent>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int sideMargin = 18;
constexpr int updateIconSize = 14;

} // namespace

SidebarFooter::SidebarFooter(QWidget *parent)
    : QWidget(parent), volume_(new QWidget(this)),
      name_(new TextLabel(Type::Size::body, QFont::Medium, volume_)), bar_(new CapacityBar(volume_)),
      free_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, volume_)),
      freed_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      trashed_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      grantAccess_(new QPushButton(text(Words::current().grantAccess), this)),
      update_(new QToolButton(this)) {
    setObjectName(QStringLiteral("sidebarFooter"));
    volume_->setObjectName(QStringLiteral("volume"));
    name_->setObjectName(QStringLiteral("volumeName"));
    bar_->setObjectName(QStringLiteral("capacityBar"));
    free_->setObjectName(QStringLiteral("freeSpace"));
    freed_->setObjectName(QStringLiteral("freedThisSession"));
    trashed_->setObjectName(QStringLiteral("movedToTrash"));
    trashed_->setWordWrap(true);
    name_->setMinimumWidth(1);
    grantAccess_->setObjectName(QStringLiteral("grantFullDiskAccess"));
    grantAccess_->setAccessibleName(grantAccess_->text());
    grantAccess_->setToolTip(text(Words::current().whyGrantAccess));
    connect(grantAccess_, &QPushButton::clicked, this,
            [] { openPrivacySettings(PrivacyPane::fullDiskAccess); });

    update_->setObjectName(QStringLiteral("update"));
    update_->setAutoRaise(true);
    update_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    update_->setFocusPolicy(Qt::TabFocus);
    update_->setFont(Type::font(Type::Size::caption));
    update_->setIconSize({updateIconSize, updateIconSize});
    connect(update_, &QToolButton::clicked, this, &SidebarFooter::updateAsked);

    auto *inVolume = new QVBoxLayout(volume_);
    inVolume->setContentsMargins(0, 0, 0, 0);
    inVolume->setSpacing(6);
    inVolume->addWidget(name_);
    inVolume->addWidget(bar_);
    inVolume->addWidget(free_);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(sideMargin, 12, sideMargin, 16);
    layout->setSpacing(8);
    layout->addWidget(volume_);
    layout->addWidget(freed_);
    layout->addWidget(trashed_);
    layout->addWidget(grantAccess_);
    layout->addWidget(update_);

    setVolume(std::nullopt);
    setFreed(0, 0);
    setHasFullDiskAccess(true);
    setUpdate({});
    tintIcons();
}

void SidebarFooter::setVolume(const std::optional<VolumeInfo> &volume) {
    volume_->setHidden(!volume);
    if (volume) {
        const std::int64_t free = volume->shownAvailable();
        const double total = static_cast<double>(std::max<std::int64_t>(volume->totalCapacity, 1));
        volumeName_ = displayedText(volume->name);
        showName();
        bar_->setAccessibleName(u"Capacity of %1"_s.arg(volumeName_));
        bar_->setUsedShare(1 - static_cast<double>(free) / total);
        free_->setText(u"%1 free of %2"_s.arg(sizeText(free), sizeText(volume->totalCapacity)));
    }
    showWhatThereIs();
}

void SidebarFooter::setFreed(std::int64_t bytes, std::int64_t inTrash) {
    freed_->setText(u"%1 freed this session"_s.arg(sizeText(bytes)));
    freed_->setHidden(bytes <= 0);
    trashed_->setText(trashText(inTrash));
    trashed_->setHidden(inTrash <= 0);
    showWhatThereIs();
}

void SidebarFooter::setHasFullDiskAccess(bool hasAccess) {
    grantAccess_->setHidden(hasAccess);
    showWhatThereIs();
}

void SidebarFooter::setUpdate(const QString &line) {
    updateLine_ = line;
    update_->setHidden(line.isEmpty());
    update_->setAccessibleName(line);
    showUpdate();
    showWhatThereIs();
}

void SidebarFooter::showWhatThereIs() {
    setHidden(volume_->isHidden() && freed_->isHidden() && trashed_->isHidden() && grantAccess_->isHidden() &&
              update_->isHidden());
}

void SidebarFooter::showUpdate() {
    update_->setText({}); // its width is then what the icon and the margins need
    const int room = width() - 2 * sideMargin - update_->sizeHint().width();
    const QString shown = update_->fontMetrics().elidedText(updateLine_, Qt::ElideMiddle, room);
    update_->setText(asLabel(shown));
    update_->setToolTip(shown == updateLine_ ? QString() : asToolTip(updateLine_));
}

void SidebarFooter::showName() {
    const QString shown =
        name_->fontMetrics().elidedText(volumeName_, Qt::ElideMiddle, width() - 2 * sideMargin);
    name_->setText(shown);
    name_->setToolTip(shown == volumeName_ ? QString() : asToolTip(volumeName_));
    name_->setAccessibleName(volumeName_);
}

void SidebarFooter::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    showName();
    showUpdate();
}

void SidebarFooter::paintEvent(QPaintEvent *) {
    QPainter(this).fillRect(QRect(0, 0, width(), 1), Theme::current().border);
}

void SidebarFooter::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        tintIcons();
}

void SidebarFooter::tintIcons() {
    grantAccess_->setIcon(
        Icons::icon(QStringLiteral("shield-alert"), Theme::current().warning, Metrics::iconSize));
    update_->setIcon(Icons::icon(QStringLiteral("refresh-cw"), Theme::current().tint, updateIconSize));
}

} // namespace brimvale
