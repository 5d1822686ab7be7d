#include "Views/Removing/RemovalSheet.h"

#include "Base/Background.h"
#include "Catalogs/Words.h"
#include "Core/Reclaim/ReclaimTexts.h"
#include "Core/Removal/RemovalPlan.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Text/Formatting.h"
#include "Views/Components/Card.h"
#include "Views/Components/DestructiveButton.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/FileChooser.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Removing/ReclaimLabel.h"
#include "Views/Removing/RemovalModePicker.h"
#include "Views/Removing/SelectionTexts.h"

#include <QAccessible>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QThreadPool>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int sheetWidth = 480;
constexpr std::size_t mostItemsShown = 6;
constexpr std::size_t mostReasonsShown = 3;

QString question(const std::vector<CleanupEntry> &items) {
    const QString bytes = sizeText(CleanupEntries::totalSize(items));
    if (items.size() == 1)
        return u"Remove “%1”, %2?"_s.arg(displayedText(items.front().url.fileName()), bytes);
    return u"Remove %1 items, %2?"_s.arg(text(Fmt::count(static_cast<std::int64_t>(items.size()))), bytes);
}

/// What is not in a plan and why, in lines, the first `most` of them.
QString leftOutText(const std::vector<RemovalResult::Failure> &leftOut, std::size_t most) {
    if (leftOut.empty())
        return {};
    QStringList lines = {u"\nLeft out:"_s};
    for (std::size_t i = 0; i < std::min(leftOut.size(), most); ++i)
        lines.append(displayedText(RemovalReport::failureLine(leftOut[i])));
    if (leftOut.size() > most)
        lines.append(
            u"and %1 more"_s.arg(text(Fmt::count(static_cast<std::int64_t>(leftOut.size() - most)))));
    return lines.join(u'\n');
}

std::string remarkOn(const RemovalRequest &request, RemovalMode mode) {
    if (request.remark)
        return request.remark(mode);
    if (mode == RemovalMode::trash)
        return RemovalReport::trashRemark(CleanupEntries::totalSize(request.items));
    return cannotBeUndone;
}

} // namespace

RemovalSheet::RemovalSheet(RemovalRequest request, QWidget *parent)
    : Sheet("removalSheet", u"Remove"_s, parent), request_(std::move(request)),
      freesAtMost_(RemovalReport::freesAtMost(request_.items)), picker_(new RemovalModePicker(this)),
      remark_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      reclaim_(new ReclaimLabel(Type::Size::body, this)),
      savePlan_(makeButton("savePlan", u"Save Plan…"_s, this)),
      planNote_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      remove_(new DestructiveButton(this)) {
    picker_->setMode(request_.areInTrash ? RemovalMode::deleteNow : request_.mode);
    picker_->setHidden(request_.areInTrash || (request_.uninstalls && request_.items.size() == 1));
    remark_->setObjectName(QStringLiteral("remark"));
    remark_->setWordWrap(true);
    connect(picker_, &RemovalModePicker::modeChanged, this, &RemovalSheet::showMode);

    remove_->setObjectName(QStringLiteral("confirm"));
    connect(remove_, &QPushButton::clicked, this, [this] {
        std::optional<FreePromise> promise;
        if (picker_->mode() == RemovalMode::deleteNow && reclaim_->answer())
            promise = promiseOf(*reclaim_->answer());
        emit confirmed(picker_->mode(), promise);
        accept();
    });

    QVBoxLayout *layout = makeLayout();
    layout->addWidget(makeHeading("question", question(request_.items)));
    layout->addWidget(makeItemList());
    layout->addLayout(makeModeRow());
    layout->addWidget(remark_);
    layout->addWidget(reclaim_); // after the remark, which it puts right
    layout->addWidget(planNote_);
    layout->addStretch(1);
    addButtons(*layout, {remove_, makeCloseButton("cancel", u"Cancel"_s)});
    setFixedWidth(Type::scaled(sheetWidth));
    showMode();
    connect(reclaim_, &ReclaimLabel::linesChanged, this, &RemovalSheet::fit);
    if (request_.reclaim)
        reclaim_->setAnswer(*request_.reclaim);
    else if (!request_.uninstalls)
        reclaim_->ask(urlsOf(request_.items));
    fit();
}

RemovalSheet::~RemovalSheet() {
    closed_.set();
}

QLayout *RemovalSheet::makeModeRow() {
    savePlan_->setToolTip(u"Save these items to a file, so that brimvalectl can remove them later"_s);
    savePlan_->setHidden(request_.uninstalls); // another program removes it
    connect(savePlan_, &QPushButton::clicked, this, &RemovalSheet::askForPlanFile);
    planNote_->setObjectName(QStringLiteral("planNote"));
    planNote_->setWordWrap(true);
    planNote_->hide();
    auto *row = new QHBoxLayout;
    row->addWidget(picker_);
    row->addStretch(1);
    row->addWidget(savePlan_);
    return row;
}

/// Gives the sheet the height of what it says now.
void RemovalSheet::fit() {
    layout()->activate();
    resize(width(), layout()->totalHeightForWidth(width()));
}

/// The first few items with their sizes, and the number of the others.
QWidget *RemovalSheet::makeItemList() {
    auto *card = new Card(this);
    auto *rows = new QGridLayout(card);
    rows->setContentsMargins(12, 10, 12, 10);
    rows->setVerticalSpacing(6);
    rows->setColumnStretch(0, 1);
    const auto addRow = [&](const QString &left, const QString &right) {
        auto *name = new ElidedLabel(Type::Size::body, TextLabel::Tone::primary, Qt::ElideMiddle, card);
        name->setText(left);
        auto *size = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, card);
        size->setText(right);
        const int row = rows->rowCount();
        rows->addWidget(name, row, 0);
        rows->addWidget(size, row, 1, Qt::AlignRight);
    };
    const std::size_t shown = std::min(request_.items.size(), mostItemsShown);
    for (std::size_t i = 0; i < shown; ++i) {
        const CleanupEntry &item = request_.items[i];
        addRow(displayedText(item.url.path()), sizeText(item.size));
    }
    if (const std::size_t rest = request_.items.size() - shown; rest > 0)
        addRow(u"and %1 more"_s.arg(text(Fmt::count(static_cast<std::int64_t>(rest)))),
               u"%1 in all"_s.arg(sizeText(CleanupEntries::totalSize(request_.items))));
    return card;
}

void RemovalSheet::askForPlanFile() {
    chooseFileToSave(*this, u"Save the Plan"_s, u"removal-plan.json"_s, u"json"_s,
                     [this](const std::string &path) { savePlan(path); });
}

void RemovalSheet::savePlan(const std::string &path) {
    struct Saved {
        std::vector<RemovalResult::Failure> leftOut = {};
        std::optional<FileError> failure = {};
    };
    savePlan_->setEnabled(false);
    remove_->setEnabled(false); // the plan has the items as they are before any removal
    showPlanNote(u"Looking at the items…"_s);
    inBackground(
        *QThreadPool::globalInstance(), this,
        [path, items = request_.items, mode = picker_->mode(), stopped = closed_] {
            const MadePlan made = planFor(items, mode, stopped);
            if (stopped.isSet())
                return Saved{};
            return Saved{made.leftOut, brimvale::savePlan(path, made.plan)};
        },
        [this, path](const Saved &saved) {
            const QString file = displayedText(FileURL(path).fileName());
            if (saved.failure)
                return endPlan(u"“%1” could not be written: %2"_s.arg(
                    file, displayedText(saved.failure->localizedDescription)));
            const QString note =
                u"“%1” was written. Carry it out with “brimvalectl remove --plan”."_s.arg(file);
            endPlan(note + leftOutText(saved.leftOut, mostReasonsShown),
                    leftOutText(saved.leftOut, saved.leftOut.size()).trimmed());
        });
}

void RemovalSheet::endPlan(const QString &note, const QString &toolTip) {
    savePlan_->setEnabled(true);
    remove_->setEnabled(true);
    planNote_->setToolTip(toolTip.isEmpty() ? QString() : asToolTip(toolTip));
    showPlanNote(note);
    QAccessibleEvent alert(planNote_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void RemovalSheet::showPlanNote(const QString &note) {
    planNote_->setText(note);
    planNote_->show();
    fit();
}

void RemovalSheet::showMode() {
    const RemovalMode mode = picker_->mode();
    reclaim_->setMode(mode);
    remove_->setText(request_.uninstalls          ? u"Uninstall"_s
                     : mode == RemovalMode::trash ? u"Move to Trash"_s
                                                  : u"Delete Immediately"_s);
    QString remark = text(remarkOn(request_, mode));
    if (freesAtMost_)
        remark += (remark.isEmpty() ? u""_s : u" "_s) + text(Words::current().freesAtMost);
    remark_->setText(remark);
    remark_->setVisible(!remark.isEmpty());
    fit();
}

} // namespace brimvale
