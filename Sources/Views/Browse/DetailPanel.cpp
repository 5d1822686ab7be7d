#include "Views/Browse/DetailPanel.h"

#include "Base/Bytes.h"
#include "Catalogs/Words.h"
#include "Core/Scan/NodeExplanation.h"
#include "Core/Scan/OutermostNodes.h"
#include "Core/Text/Formatting.h"
#include "Views/Browse/Outline/OutlineColumns.h"
#include "Views/Browse/SteadyArea.h"
#include "Views/Components/DestructiveButton.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/Icons.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"
#include "Views/Removing/ReclaimLabel.h"
#include "Views/Removing/SelectionTexts.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int pictureSize = 20;
constexpr int buttonIconSize = 14;
constexpr int iconButtonWidth = 28;
constexpr int figuresInARow = 3;
constexpr int linesOfARow = 3; ///< titles, values and a gap
constexpr int gapBelowARow = 4;

QString shareText(const FSNode &node) {
    if (node.folder() == nullptr || node.folder()->size < 1)
        return QStringLiteral("—");
    return percentText(node);
}

/// A button with only an icon; its title is its tool tip.
QPushButton *makeIconButton(const char *objectName, const QString &title, QWidget *parent) {
    QPushButton *button = makeButton(objectName, {}, parent);
    button->setFlat(true);
    button->setFixedWidth(iconButtonWidth);
    button->setToolTip(title);
    button->setAccessibleName(title);
    return button;
}

} // namespace

DetailPanel::DetailPanel(QWidget *parent)
    : QWidget(parent), icon_(new QLabel(this)),
      name_(new ElidedLabel(Type::Size::heading, QFont::DemiBold, Qt::ElideMiddle, this)),
      path_(new ElidedLabel(Type::Size::caption, TextLabel::Tone::secondary, Qt::ElideMiddle, this)),
      explanation_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      change_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      reclaim_(new ReclaimLabel(Type::Size::caption, this)),
      notice_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      reveal_(makeIconButton("reveal", text(Words::current().revealItem), this)),
      copyPath_(makeIconButton("copyPath", u"Copy Path"_s, this)),
      objection_(new TextLabel(Type::Size::caption, TextLabel::Tone::warning, this)),
      remove_(new DestructiveButton(this)), route_(makeButton("route", {}, this)) {
    setObjectName(QStringLiteral("detailPanel"));
    name_->setObjectName(QStringLiteral("detailName"));
    path_->setObjectName(QStringLiteral("detailPath"));
    explanation_->setObjectName(QStringLiteral("detailExplanation"));
    explanation_->setWordWrap(true);
    change_->setObjectName(QStringLiteral("detailChange"));
    change_->setWordWrap(true);
    change_->hide();
    notice_->setObjectName(QStringLiteral("notice"));
    objection_->setObjectName(QStringLiteral("objection"));
    objection_->setWordWrap(true);

    auto *names = new QVBoxLayout;
    names->setSpacing(2);
    names->addWidget(name_);
    names->addWidget(path_);
    auto *head = new QHBoxLayout;
    head->setSpacing(10);
    icon_->setFixedSize(pictureSize, pictureSize);
    head->addWidget(icon_, 0, Qt::AlignTop);
    head->addLayout(names, 1);
    head->addWidget(reveal_, 0, Qt::AlignTop);
    head->addWidget(copyPath_, 0, Qt::AlignTop);

    auto *figures = new QGridLayout;
    figures->setHorizontalSpacing(16);
    figures->setVerticalSpacing(2);
    const std::array<QString, figureCount> titles = {u"Allocated"_s, u"Logical size"_s, u"Share"_s,
                                                     u"Files"_s, u"Folders"_s};
    const std::array<const char *, figureCount> objectNames = {"allocated", "logical", "share", "files",
                                                               "folders"};
    for (std::size_t i = 0; i < titles.size(); ++i) {
        const int place = static_cast<int>(i);
        titles_[i] = new ElidedLabel(Type::Size::caption, TextLabel::Tone::tertiary, Qt::ElideRight, this);
        titles_[i]->setText(titles[i]);
        titles_[i]->setOnlySeen(); // the values have it in their names
        values_[i] = new TextLabel(Type::Size::body, QFont::Medium, this);
        values_[i]->setObjectName(QLatin1String(objectNames[i]));
        const int row = linesOfARow * (place / figuresInARow);
        figures->addWidget(titles_[i], row, place % figuresInARow);
        figures->addWidget(values_[i], row + 1, place % figuresInARow);
        figures->setRowMinimumHeight(row + 2, gapBelowARow);
        figures->setColumnStretch(place % figuresInARow, 1);
    }

    auto *actions = new QHBoxLayout;
    actions->setSpacing(8);
    actions->addWidget(remove_);
    actions->addWidget(route_);
    actions->addWidget(notice_, 1);
    actions->addStretch(1);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->setSpacing(10);
    layout->addLayout(head);
    layout->addLayout(figures);
    layout->addWidget(makeNotes());
    layout->addLayout(actions);

    connect(reveal_, &QPushButton::clicked, this, &DetailPanel::revealRequested);
    connect(copyPath_, &QPushButton::clicked, this, &DetailPanel::copyPathRequested);
    remove_->setObjectName(QStringLiteral("remove"));
    connect(remove_, &QPushButton::clicked, this, &DetailPanel::removalRequested);
    connect(route_, &QPushButton::clicked, this, &DetailPanel::routeRequested);
    showRemoval(0, 0, false);
    showObjection({});
    showNodes({});
}

/// The remarks on the selection, below each other. They must not move the treemap when they appear.
QWidget *DetailPanel::makeNotes() {
    constexpr int usualLines = 2;
    auto *notes = new SteadyArea(usualLines * explanation_->fontMetrics().height(), this);
    auto *layout = new QVBoxLayout(notes);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(reclaim_);
    layout->addWidget(explanation_);
    layout->addWidget(change_);
    layout->addWidget(objection_);
    layout->addStretch(1);
    return notes;
}

void DetailPanel::showNodes(const std::vector<FSNode *> &nodes) {
    std::int64_t size = 0, logicalSize = 0, fileCount = 0, dirCount = 0;
    for (const FSNode *node : outermostNodes(nodes)) {
        size = checkedAdd(size, node->size);
        logicalSize = checkedAdd(logicalSize, node->logicalSizeLeft());
        fileCount = checkedAdd(fileCount, node->fileCount);
        dirCount = checkedAdd(dirCount, node->dirCountLeft());
    }
    const FSNode *only = nodes.size() == 1 ? nodes.front() : nullptr;
    iconName_ = only != nullptr ? nodeIconName(*only) : QStringLiteral("files");
    name_->setText(only != nullptr
                       ? displayedName(*only)
                       : u"%1 selected"_s.arg(counted(static_cast<std::int64_t>(nodes.size()), "item")));
    path_->setText(only != nullptr ? displayedText(only->path()) : QString());
    const QString none = QStringLiteral("—");
    if (nodes.empty()) {
        name_->setText(u"Nothing selected"_s);
        showFigures({none, none, none, none, none});
    } else {
        const bool isAtLeast =
            std::any_of(nodes.begin(), nodes.end(), [](const FSNode *node) { return node->isAtLeast(); });
        showFigures({isAtLeast ? u"≥ %1"_s.arg(sizeText(size)) : sizeText(size), sizeText(logicalSize),
                     only != nullptr ? shareText(*only) : none, text(Fmt::count(fileCount)),
                     text(Fmt::count(dirCount))});
    }
    std::optional<std::string> why = only != nullptr ? explanation(*only) : std::nullopt;
    if (only != nullptr && !why)
        why = remarkOnNames(*only);
    explanation_->setText(why ? text(*why) : QString());
    explanation_->setVisible(why.has_value());
    reveal_->setEnabled(only != nullptr && !only->isImported());
    copyPath_->setEnabled(!nodes.empty());
    reclaim_->ask({});
    showNotice({});
    drawIcon();
}

void DetailPanel::showChange(const QString &sentence) {
    change_->setText(sentence);
    change_->setHidden(sentence.isEmpty());
}

void DetailPanel::showReclaim(std::vector<FileURL> items, LinkPlaces linkPlaces) {
    constexpr std::chrono::milliseconds restBefore{400}; // walking through a list asks about none of its rows
    reclaim_->ask(std::move(items), restBefore, std::move(linkPlaces));
}

std::optional<Reclaim> DetailPanel::recentReclaim() const {
    return reclaim_->recentAnswer();
}

void DetailPanel::showRemoval(std::int64_t count, std::int64_t bytes, bool isRemoving) {
    remove_->setText(removalTitle(count, bytes));
    canRemove_ = count > 0 && !isRemoving;
    enableRemoval();
}

void DetailPanel::showObjection(const std::optional<Objection> &objection) {
    hasObjection_ = objection.has_value();
    objection_->setText(objection ? objection->reason : QString());
    objection_->setToolTip(objection ? asToolTip(objection->reason) : QString()); // where it has no room
    objection_->setHidden(!objection);
    route_->setText(objection ? asLabel(objection->route) : QString());
    route_->setHidden(!objection || objection->route.isEmpty());
    remove_->setHidden(!route_->isHidden());
    enableRemoval();
}

void DetailPanel::enableRemoval() {
    remove_->setEnabled(canRemove_ && !hasObjection_);
}

void DetailPanel::showNotice(const QString &notice) {
    notice_->setText(notice);
    notice_->setVisible(!notice.isEmpty());
}

void DetailPanel::showFigures(const std::array<QString, figureCount> &values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        values_[i]->setText(values[i]);
        values_[i]->setAccessibleName(titles_[i]->text() + QStringLiteral(": ") + values[i]);
    }
}

void DetailPanel::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        drawIcon();
}

void DetailPanel::drawIcon() {
    const QColor quiet = Theme::current().secondaryText;
    reveal_->setIcon(Icons::icon(QStringLiteral("external-link"), quiet, buttonIconSize));
    copyPath_->setIcon(Icons::icon(QStringLiteral("copy"), quiet, buttonIconSize));
    icon_->setPixmap(Icons::pixmap(iconName_, Theme::current().tint, pictureSize, devicePixelRatioF()));
}

} // namespace brimvale
