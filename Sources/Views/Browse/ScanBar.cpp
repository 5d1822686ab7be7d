#include "Views/Browse/ScanBar.h"

#include "Core/Model/ScanSession.h"
#include "Core/Model/Volumes.h"
#include "Core/Scan/ScanRootPreset.h"
#include "Core/Scan/ScanStats.h"
#include "Core/Scan/UnreadableItems.h"
#include "Core/Text/Formatting.h"
#include "Platform/FileStatus.h"
#include "Views/Components/AccessNotice.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/FolderChooser.h"
#include "Views/Components/FoldingButton.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Popup.h"
#include "Views/Components/ProgressLine.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QVBoxLayout>
#include <cmath>
#include <cstdint>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int progressWidth = 160;

/// A label for a growing figure: right-aligned, and always as wide as `widest`.
TextLabel *makeFigure(QWidget *parent, TextLabel::Tone tone, const char *objectName, const QString &widest) {
    auto *label = new TextLabel(Type::Size::body, tone, parent);
    label->setObjectName(QLatin1String(objectName));
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(widest));
    return label;
}

QString elapsedText(double seconds) {
    if (seconds < 60)
        return QStringLiteral("%1 s").arg(seconds, 0, 'f', 1);
    const auto whole = static_cast<int>(std::floor(seconds));
    return QStringLiteral("%1:%2").arg(whole / 60).arg(whole % 60, 2, 10, QLatin1Char('0'));
}

/// Above the number that is listed, the count is not kept exact.
QString unreadableCount(std::int64_t count) {
    constexpr auto most = static_cast<std::int64_t>(UnreadableItems::mostListed);
    return count > most ? u"more than %1"_s.arg(text(Fmt::count(most))) : text(Fmt::count(count));
}

} // namespace

ScanBar::ScanBar(ScanSession &scan, const Volumes &volumes, QWidget *parent)
    : QWidget(parent), session_(scan), volumes_(volumes), presets_(new QComboBox(this)),
      choose_(new FoldingButton(u"Choose Folder"_s, this)), scan_(new FoldingButton({}, this)),
      root_(new ElidedLabel(Type::Size::body, TextLabel::Tone::secondary, Qt::ElideMiddle, this)),
      files_(makeFigure(this, TextLabel::Tone::primary, "scanFiles", QStringLiteral("8,888,888 files"))),
      bytes_(makeFigure(this, TextLabel::Tone::primary, "scanBytes", QStringLiteral("888.88 GB"))),
      elapsed_(makeFigure(this, TextLabel::Tone::secondary, "scanElapsed", QStringLiteral("88.8 s"))),
      unreadable_(new FoldingButton({}, this)),
      current_(new ElidedLabel(Type::Size::caption, TextLabel::Tone::tertiary, Qt::ElideMiddle, this)) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(makeControls());
    layout->addWidget(makeProgress());
    unreadable_->setObjectName(QStringLiteral("scanUnreadable"));
    unreadable_->setFlat(true);
    unreadable_->setToolTip(u"Show what could not be read, and why"_s);
    fillPlaces();

    connect(presets_, &QComboBox::activated, this, [this](int index) {
        session_.chooseScanRoot(presets_->itemData(index).toByteArray().toStdString());
    });
    connect(&volumes_, &Volumes::changed, this, &ScanBar::fillPlaces);
    connect(unreadable_, &QPushButton::clicked, this, &ScanBar::unreadableAsked);
    connect(choose_, &QPushButton::clicked, this, &ScanBar::chooseFolder);
    connect(scan_, &QPushButton::clicked, this, &ScanBar::startOrStop);
    connect(&session_, &ScanSession::changed, this, &ScanBar::showSession);
    showSession();
}

QWidget *ScanBar::makeControls() {
    auto *controls = new QWidget(this);
    auto *layout = new QHBoxLayout(controls);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    presets_->setObjectName(QStringLiteral("presets"));
    presets_->setAccessibleName(u"Place to scan"_s);
    presets_->setPlaceholderText(u"Other folder"_s);
    presets_->setMinimumContentsLength(4); // in a narrow window; otherwise as wide as its longest item
    choose_->setObjectName(QStringLiteral("chooseFolder"));
    scan_->setObjectName(QStringLiteral("scan"));
    scan_->setDefault(true);
    root_->setObjectName(QStringLiteral("scanRoot"));
    for (QWidget *widget :
         {static_cast<QWidget *>(presets_), static_cast<QWidget *>(choose_), static_cast<QWidget *>(scan_)})
        layout->addWidget(widget);
    layout->addSpacing(8);
    layout->addWidget(root_, 1);
    layout->addSpacing(8);
    layout->addWidget(unreadable_);
    for (TextLabel *figure : {files_, bytes_, elapsed_})
        layout->addWidget(figure);
    foldToFit(*controls, {choose_, scan_, unreadable_});
    return controls;
}

QWidget *ScanBar::makeProgress() {
    progress_ = new QWidget(this);
    progress_->setObjectName(QStringLiteral("scanProgress"));
    auto *layout = new QHBoxLayout(progress_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    auto *bar = new ProgressLine(progress_);
    bar->setObjectName(QStringLiteral("scanProgressLine"));
    bar->setRange(0, 0); // the total is not known before the end
    bar->setFixedWidth(progressWidth);
    bar->setAccessibleName(u"Scanning"_s);
    current_->setObjectName(QStringLiteral("scanCurrent"));
    layout->addWidget(bar);
    layout->addWidget(current_, 1);
    return progress_;
}

/// The presets and, below them, the mounted volumes.
void ScanBar::fillPlaces() {
    presets_->clear();
    for (const ScanRootPreset &preset : ScanRootPreset::allCases())
        presets_->addItem(text(preset.rawValue()), QByteArray::fromStdString(preset.path()));
    addVolumes();
    showPlace();
}

void ScanBar::addVolumes() {
    bool hasSeparator = false;
    for (const VolumeInfo &volume : volumes_->volumes) {
        const QByteArray path = QByteArray::fromStdString(volume.url.path());
        if (presets_->findData(path) >= 0)
            continue;
        if (!std::exchange(hasSeparator, true))
            presets_->insertSeparator(presets_->count());
        presets_->addItem(u"%1, %2 free"_s.arg(displayedText(volume.name), sizeText(volume.shownAvailable())),
                          path);
        presets_->setItemData(presets_->count() - 1, asToolTip(displayedText(volume.url.path())),
                              Qt::ToolTipRole);
    }
}

/// During a scan only the figures change, but often.
void ScanBar::showSession() {
    if (std::exchange(shownRoot_, session_->scanRootPath) != session_->scanRootPath)
        showScanRoot();
    if (std::exchange(wasBusy_, isBusy()) != isBusy())
        showState();
    showFigures();
}

void ScanBar::showScanRoot() {
    root_->setText(displayedText(session_->scanRootPath));
    showPlace();
}

void ScanBar::showPlace() {
    presets_->setCurrentIndex(presets_->findData(QByteArray::fromStdString(session_->scanRootPath)));
}

void ScanBar::showFigures() {
    const bool hasFigures = session_->isScanning || session_->tree != nullptr;
    for (TextLabel *figure : {files_, bytes_, elapsed_})
        figure->setVisible(hasFigures);
    files_->setText(counted(session_->scanFiles, "file"));
    bytes_->setText(sizeText(session_->scanBytes));
    elapsed_->setText(elapsedText(session_->scanElapsed));
    unreadable_->setVisible(hasFigures && session_->scanUnreadable > 0);
    unreadable_->setEnabled(!session_->importedFrom); // a list does not say which they are
    unreadable_->setText(u"%1 unreadable"_s.arg(unreadableCount(session_->scanUnreadable)));
    if (isRescanning())
        current_->setText(u"Scanning “%1” again"_s.arg(displayedText(session_->rescannedPath)));
    else
        current_->setText(displayedText(session_->scanCurrentPath));
    progress_->setVisible(isBusy());
}

/// One folder of the tree, in place.
bool ScanBar::isRescanning() const {
    return !session_->isScanning && !session_->rescannedPath.empty();
}

bool ScanBar::isBusy() const {
    return session_->isScanning || isRescanning();
}

void ScanBar::showState() {
    scan_->setText(isBusy() ? u"Stop"_s : u"Scan"_s);
    drawIcons();
}

void ScanBar::startOrStop() {
    if (isRescanning())
        session_.stopRescan();
    else if (!session_->isScanning)
        AccessNotice::beforeLook(*this, [this] { session_.startScan(); });
    else if (session_.scanStats() != nullptr)
        session_.scanStats()->cancel();
    else
        session_.finishScan(nullptr);
}

/// A folder chosen here is scanned at once.
void ScanBar::chooseFolder() {
    brimvale::chooseFolder(*this, u"Choose a folder to scan"_s, session_->scanRootPath,
                           [this](const std::string &path) { scanChosen(path); });
}

void ScanBar::scanChosen(const std::string &path) {
    if (fileStatus(path)) {
        AccessNotice::beforeLook(*this, [this, path] { session_.startScan(path); });
        return;
    }
    // The chooser returns text, so a name that is not text cannot be chosen.
    auto *alert =
        new QMessageBox(QMessageBox::Warning, u"Brimvale"_s,
                        u"“%1” could not be opened."_s.arg(displayedText(path)), QMessageBox::Ok, window());
    alert->setTextFormat(Qt::PlainText);
    alert->setInformativeText(
        u"It is no longer there, or the folder chooser can’t handle its name. In that case, "
        "choose its parent folder."_s);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    usePaletteOfParent(*alert);
    alert->open();
}

void ScanBar::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && progress_ != nullptr)
        drawIcons();
}

void ScanBar::drawIcons() {
    const Theme &theme = Theme::current();
    QPalette warning = unreadable_->palette();
    warning.setColor(QPalette::ButtonText, theme.warning);
    unreadable_->setPalette(warning);
    unreadable_->setIcon(Icons::icon(QStringLiteral("triangle-alert"), theme.warning, Metrics::iconSize));
    choose_->setIcon(Icons::icon(QStringLiteral("folder"), theme.text, Metrics::iconSize));
    scan_->setIcon(Icons::icon(isBusy() ? QStringLiteral("square") : QStringLiteral("search"), theme.onAccent,
                               Metrics::iconSize));
}

} // namespace brimvale
