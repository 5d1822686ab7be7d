#include "Views/Window/ResultView.h"

#include "Core/Removal/RemovalReport.h"
#include "Core/Trash/PuttingBack.h"
#include "Core/Trash/TrashTexts.h"
#include "Views/Components/Card.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/PrivacySettings.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Window/SpaceTexts.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <string>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr std::size_t mostLinesShown = 8;
constexpr int lineGap = 4;

bool needsAnswer(const RemovalResult &result) {
    return result.isOfBackup || !result.failed.empty() || !result.needsAdmin.empty();
}

} // namespace

ResultView::ResultView(const QString &title, const QString &summary, bool needsAttention, QWidget *parent)
    : QWidget(parent), needsAttention_(needsAttention), buttons_(new QHBoxLayout), details_(new QVBoxLayout) {
    setObjectName(QStringLiteral("result"));
    setAccessibleName(title + u". "_s + summary);
    auto *heading = new TextLabel(Type::Size::body, QFont::DemiBold, this);
    heading->setObjectName(QStringLiteral("resultTitle"));
    heading->setText(title);
    auto *words = new TextLabel(Type::Size::body, TextLabel::Tone::primary, this);
    words->setObjectName(QStringLiteral("resultSummary"));
    words->setText(summary);
    words->setWordWrap(true);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(heading);
    texts->addWidget(words);
    auto *head = new QHBoxLayout;
    head->setSpacing(16);
    buttons_->setSpacing(8);
    head->addLayout(texts, 1);
    head->addLayout(buttons_);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::pageMargin, 12, Metrics::pageMargin, 12);
    layout->setSpacing(8);
    layout->addLayout(head);
    layout->addLayout(details_);
    details_->setSpacing(8);
}

ResultView::ResultView(const RemovalResult &result, QWidget *parent)
    : ResultView(text(std::string(RemovalReport::title(result))), text(RemovalReport::summary(result)),
                 needsAnswer(result), parent) {
    removal_ = result;
    for (const QString &words : spaceLines(result))
        addLine("space", words);
    if (!result.remarks.empty())
        addLines("remark", RemovalReport::remarkLines(result));
    if (!result.partlyRemoved.empty())
        addLines("part", RemovalReport::partLines(result));
    if (!result.failed.empty())
        addLines("failure", RemovalReport::failureLines(result));
    if (!result.movedToTrash.empty()) {
        undo_ = addButton("undo", u"Undo"_s);
        connect(undo_, &QPushButton::clicked, this, &ResultView::undoAsked);
    }
    if (result.bytesMovedToTrash > 0) {
        emptyTrash_ = addButton("emptyTrash", u"Empty Trash…"_s);
        connect(emptyTrash_, &QPushButton::clicked, this, &ResultView::emptyingAsked);
    }
    if (result.needsAdmin.empty()) {
        addDismissal();
    } else {
        addAdminSection(result);
        addAdminChoice(result);
    }
}

ResultView::ResultView(const PutBackResult &result, QWidget *parent)
    : ResultView(result.failed.empty() ? u"Done"_s : u"Some items are still in the Trash"_s,
                 text(TrashTexts::summary(result)), !result.failed.empty(), parent) {
    if (!result.remarks.empty())
        addLines("remark", RemovalReport::remarkLines({.remarks = result.remarks}));
    if (!result.failed.empty())
        addLines("failure", RemovalReport::failureLines({.failed = result.failed}));
    addDismissal();
}

void ResultView::setCanEscalate(bool can) {
    if (authenticate_ != nullptr)
        authenticate_->setEnabled(can);
}

void ResultView::setUndo(bool isOffered, bool isPossible) {
    if (undo_ == nullptr)
        return;
    undo_->setVisible(isOffered);
    undo_->setEnabled(isPossible);
}

void ResultView::setEmptyTrash(bool isOffered, bool isPossible) {
    if (emptyTrash_ == nullptr)
        return;
    emptyTrash_->setVisible(isOffered);
    emptyTrash_->setEnabled(isPossible);
}

QPushButton *ResultView::addButton(const char *objectName, const QString &title) {
    QPushButton *button = makeButton(objectName, title, this);
    buttons_->addWidget(button, 0, Qt::AlignTop);
    return button;
}

void ResultView::addDismissal() {
    connect(addButton("ok", u"OK"_s), &QPushButton::clicked, this, &ResultView::dismissed);
}

void ResultView::addLine(const char *objectName, const QString &words) {
    auto *line = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this);
    line->setObjectName(QLatin1String(objectName));
    line->setText(words);
    line->setWordWrap(true);
    line->setTextInteractionFlags(Qt::TextSelectableByMouse);
    details_->addWidget(line);
}

void ResultView::addLines(const char *objectName, const std::vector<std::string> &lines) {
    for (const std::string &words : lines)
        addLine(objectName, displayedText(words));
}

void ResultView::addAdminSection(const RemovalResult &result) {
    auto *heading = new TextLabel(Type::Size::body, QFont::DemiBold, this);
    heading->setObjectName(QStringLiteral("adminTitle"));
    heading->setText(u"Some items need admin rights"_s);
    auto *card = new Card(this);
    auto *cardLayout = new QVBoxLayout(card);
    cardLayout->setContentsMargins(6, 6, 6, 6);
    cardLayout->addWidget(makeAdminList(result));
    auto *note = new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this);
    note->setText(u"Items removed with admin rights don’t go to the Trash. They are deleted immediately."_s);
    note->setWordWrap(true);
    details_->addWidget(heading);
    details_->addWidget(card);
    details_->addWidget(note);
}

/// All items, because all of them are deleted; a few are visible at once. What keeps an item stands below it.
QWidget *ResultView::makeAdminList(const RemovalResult &result) {
    std::unordered_map<FileURL, std::string> remarks;
    for (const auto &[url, remark] : result.adminRemarks)
        remarks.emplace(url, remark);
    auto *list = new QListWidget(this);
    list->setObjectName(QStringLiteral("adminItems"));
    list->setAccessibleName(u"Items that need admin rights"_s);
    list->setFont(Type::font(Type::Size::body));
    list->setFrameShape(QFrame::NoFrame);
    list->setTextElideMode(Qt::ElideMiddle);
    list->setWordWrap(!remarks.empty());
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list->setUniformItemSizes(remarks.empty());
    for (const FileURL &item : result.needsAdmin) {
        const auto remark = remarks.find(item);
        QString words = displayedText(item.path());
        if (remark != remarks.end())
            words += u'\n' + displayedText(remark->second);
        list->addItem(words);
    }
    const int lines =
        static_cast<int>(std::min(result.needsAdmin.size() + 2 * remarks.size(), mostLinesShown));
    list->setFixedHeight(lines * (QFontMetrics(list->font()).height() + lineGap));
    return list;
}

void ResultView::addAdminChoice(const RemovalResult &result) {
    if (result.needsAppManagement) {
        QPushButton *settings = addButton("appManagement", u"Open App Management Settings"_s);
        connect(settings, &QPushButton::clicked, this,
                [] { openPrivacySettings(PrivacyPane::appManagement); });
    }
    authenticate_ = addButton("authenticate", u"Authenticate and remove"_s);
    connect(authenticate_, &QPushButton::clicked, this,
            [this, items = result.needsAdmin] { emit escalated(items); });
    connect(addButton("skip", u"Skip"_s), &QPushButton::clicked, this, &ResultView::dismissed);
}

} // namespace brimvale
