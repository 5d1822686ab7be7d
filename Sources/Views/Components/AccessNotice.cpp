#include "Views/Components/AccessNotice.h"

#include "Catalogs/Words.h"
#include "Core/Storage/Permissions.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/PrivacySettings.h"
#include "Views/Components/Sheet.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"

#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int noticeWidth = 480;

class NoticeSheet : public Sheet {
public:
    explicit NoticeSheet(QWidget *parent)
        : Sheet("accessNotice", text(Words::current().accessNoticeTitle), parent) {
        QVBoxLayout *layout = makeLayout();
        layout->addWidget(makeHeading("accessNoticeTitle", windowTitle()));
        layout->addWidget(makeParagraph(Words::current().accessNotice, TextLabel::Tone::primary));
        layout->addWidget(makeParagraph(Words::current().accessAdvice, TextLabel::Tone::secondary));
        layout->addSpacing(4);
        addChoice(*layout);
        setFixedWidth(Type::scaled(noticeWidth));
        resize(width(), layout->totalHeightForWidth(width()));
    }

private:
    TextLabel *makeParagraph(const std::string &words, TextLabel::Tone tone) {
        auto *paragraph = new TextLabel(Type::Size::body, tone, this);
        paragraph->setText(text(words));
        paragraph->setWordWrap(true);
        return paragraph;
    }

    /// The settings open beside the sheet, so the user can come back to it.
    void addChoice(QVBoxLayout &layout) {
        QPushButton *cancel = makeButton("cancelLook", u"Cancel"_s, this);
        connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
        QPushButton *grant = makeButton("grantAccess", text(Words::current().grantAccess), this);
        connect(grant, &QPushButton::clicked, this, [] { openPrivacySettings(PrivacyPane::fullDiskAccess); });
        QPushButton *proceed = makeButton("look", u"Continue"_s, this);
        proceed->setDefault(true);
        connect(proceed, &QPushButton::clicked, this, &QDialog::accept);
        addButtons(layout, {cancel, grant, proceed});
    }
};

} // namespace

AccessNotice::AccessNotice(QWidget &window) : QObject(&window), window_(window) {}

void AccessNotice::beforeLook(QWidget &page, std::function<void()> look) {
    auto *notice = page.window()->findChild<AccessNotice *>({}, Qt::FindDirectChildrenOnly);
    if (notice == nullptr || !notice->isDue())
        return look();
    notice->show(page, std::move(look));
}

bool AccessNotice::isDue() const {
    return !wasShown_ && !Permissions::hasFullDiskAccess();
}

void AccessNotice::show(QWidget &page, std::function<void()> look) {
    wasShown_ = true;
    auto *sheet = new NoticeSheet(&window_);
    connect(sheet, &QDialog::accepted, &page, std::move(look));
    sheet->open();
}

} // namespace brimvale
