#include "Views/Window/ResultSheet.h"

#include "Core/Removal/RemovalReport.h"
#include "Views/Components/Card.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/PrivacySettings.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Window/SpaceTexts.h"

#include <QFontMetrics>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <string>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int sheetWidth = 480;
constexpr std::size_t mostLinesShown = 8;
constexpr int lineGap = 4;

} // namespace

ResultSheet::ResultSheet(const RemovalResult &result, QWidget *parent)
    : Sheet("resultSheet", text(std::string(RemovalReport::title(result))), parent) {
    auto *summary = new TextLabel(Type::Size::body, TextLabel::Tone::primary, this);
    summary->setObjectName(QStringLiteral("resultSummary"));
    summary->setText(text(RemovalReport::summary(result)));
    summary->setWordWrap(true);

    QVBoxLayout *layout = makeLayout();
    layout->addWidget(makeHeading("resultTitle", windowTitle()));
    layout->addWidget(summary);
    for (const QString &words : spaceLines(result)) {
        auto *line = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this);
        line->setObjectName(QStringLiteral("space"));
        line->setText(words);
        line->setWordWrap(true);
        layout->addWidget(line);
    }
    if (!result.remarks.empty())
        addLines(*layout, "remark", RemovalReport::remarkLines(result));
    if (!result.partlyRemoved.empty())
        addLines(*layout, "part", RemovalReport::partLines(result));
    if (!result.failed.empty())
        addLines(*layout, "failure", RemovalReport::failureLines(result));
    if (!result.needsAdmin.empty())
        addAdminSection(*layout, result);
    layout->addSpacing(4);
    addChoice(*layout, result);
    setFixedWidth(sheetWidth);
    resize(sheetWidth, layout->totalHeightForWidth(sheetWidth));
}

void ResultSheet::setCanEscalate(bool can) {
    if (authenticate_ != nullptr)
        authenticate_->setEnabled(can);
}

void ResultSheet::addLines(QVBoxLayout &layout, const char *objectName,
                           const std::vector<std::string> &lines) {
    auto *card = new Card(this);
    auto *rows = new QVBoxLayout(card);
    rows->setContentsMargins(12, 10, 12, 10);
    rows->setSpacing(6);
    for (const std::string &words : lines) {
        auto *line = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, card);
        line->setObjectName(QString::fromLatin1(objectName));
        line->setText(displayedText(words));
        line->setWordWrap(true);
        line->setTextInteractionFlags(Qt::TextSelectableByMouse);
        rows->addWidget(line);
    }
    layout.addWidget(card);
}

void ResultSheet::addAdminSection(QVBoxLayout &layout, const RemovalResult &result) {
    auto *heading = new TextLabel(Type::Size::body, QFont::DemiBold, this);
    heading->setObjectName(QStringLiteral("adminTitle"));
    heading->setText(u"Some items need admin rights"_s);
    auto *card = new Card(this);
    auto *cardLayout = new QVBoxLayout(card);
    cardLayout->setContentsMargins(6, 6, 6, 6);
    cardLayout->addWidget(makeAdminList(result));
    auto *note = new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this);
    note->setText(u"There is no Trash for what an administrator removes: it is deleted immediately."_s);
    note->setWordWrap(true);
    layout.addWidget(heading);
    layout.addWidget(card);
    layout.addWidget(note);
}

/// All items, because all of them are deleted; a few are visible at once. What keeps an item stands below it.
QWidget *ResultSheet::makeAdminList(const RemovalResult &result) {
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

void ResultSheet::addSettingsButton(QVBoxLayout &layout) {
    QPushButton *settings = makeButton("appManagement", u"Open App Management Settings"_s, this);
    connect(settings, &QPushButton::clicked, this, [] { openPrivacySettings(PrivacyPane::appManagement); });
    layout.addWidget(settings, 0, Qt::AlignLeft);
}

void ResultSheet::addChoice(QVBoxLayout &layout, const RemovalResult &result) {
    const std::vector<FileURL> &needsAdmin = result.needsAdmin;
    if (needsAdmin.empty())
        return addButtons(layout, {makeCloseButton("ok", u"OK"_s)});
    if (result.needsAppManagement)
        addSettingsButton(layout);
    authenticate_ = makeButton("authenticate", u"Authenticate and remove"_s, this);
    connect(authenticate_, &QPushButton::clicked, this, [this, needsAdmin] {
        emit escalated(needsAdmin);
        accept();
    });
    addButtons(layout, {authenticate_, makeCloseButton("skip", u"Skip"_s)});
}

} // namespace brimvale
