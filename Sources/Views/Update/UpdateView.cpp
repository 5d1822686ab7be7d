#include "Views/Update/UpdateView.h"

#include "Core/Update/Updater.h"
#include "Views/Components/Card.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Popup.h"
#include "Views/Components/ProgressLine.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <chrono>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int windowWidth = 460;
constexpr int notesHeight = 160;
constexpr int wholeRange = 1000;

/// The time in the format of the user's locale.
QString text(Date moment) {
    const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(moment).time_since_epoch();
    return QLocale::system().toString(QDateTime::fromMSecsSinceEpoch(sinceEpoch.count()),
                                      QLocale::ShortFormat);
}

} // namespace

UpdateView::UpdateView(Updater &updater, QWidget *parent)
    : QDialog(parent), updater_(updater), title_(new TextLabel(Type::Size::heading, QFont::DemiBold, this)),
      text_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)), notesCard_(new Card(this)),
      notes_(new QPlainTextEdit(notesCard_)), progress_(new ProgressLine(this)),
      lastChecked_(new TextLabel(Type::Size::caption, TextLabel::Tone::tertiary, this)),
      stop_(makeButton("stopCheck", u"Stop"_s, this)), action_(new QPushButton(this)) {
    setObjectName(QStringLiteral("updateWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    usePaletteOfParent(*this);
    setWindowTitle(u"Software Update"_s);
    title_->setObjectName(QStringLiteral("updateTitle"));
    title_->setWordWrap(true);
    text_->setObjectName(QStringLiteral("updateText"));
    text_->setWordWrap(true);
    notes_->setObjectName(QStringLiteral("updateNotes"));
    notes_->setAccessibleName(u"Release notes"_s);
    notes_->setReadOnly(true);
    notes_->setFixedHeight(Type::scaled(notesHeight));
    notes_->setFrameShape(QFrame::NoFrame);
    progress_->setObjectName(QStringLiteral("updateProgress"));
    progress_->setAccessibleName(u"Download"_s);
    lastChecked_->setObjectName(QStringLiteral("lastChecked"));
    action_->setObjectName(QStringLiteral("updateAction"));
    connect(action_, &QPushButton::clicked, this, &UpdateView::act);
    connect(stop_, &QPushButton::clicked, this, &UpdateView::stop);
    arrange();
    connect(&updater_, &Updater::stateChanged, this, [this] {
        showState();
        // A closed window still exists until the event loop runs; it shows no answer.
        if (isAnswerDue_ && isVisible() && !std::holds_alternative<updateState::Checking>(*updater_.state))
            answer();
    });
    connect(&updater_, &Updater::lastCheckedChanged, this, &UpdateView::showState);
    showState();
}

void UpdateView::arrange() {
    auto *inCard = new QVBoxLayout(notesCard_);
    inCard->setContentsMargins(8, 8, 8, 8);
    inCard->addWidget(notes_);
    QPushButton *close = makeButton("close", u"Close"_s, this);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(stop_);
    buttons->addWidget(close);
    buttons->addWidget(action_);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::sheetMargin, Metrics::sheetMargin, Metrics::sheetMargin,
                               Metrics::sheetFoot);
    layout->setSpacing(12);
    for (QWidget *part :
         {static_cast<QWidget *>(title_), static_cast<QWidget *>(text_), static_cast<QWidget *>(notesCard_),
          static_cast<QWidget *>(progress_), static_cast<QWidget *>(lastChecked_)})
        layout->addWidget(part);
    layout->addStretch(1);
    layout->addLayout(buttons);
    setFixedWidth(Type::scaled(windowWidth));
}

UpdateView::Content UpdateView::offer(const updateState::Available &update, const QString &running) const {
    const QString title = u"Version %1 is available"_s.arg(displayedText(update.version));
    const QString notes = text(update.notes.value_or(""));
    if (updater_.canInstallItself())
        return {title, running, notes, u"Download and Install"_s};
    const QString advice = u"%1 Install it with your system’s package manager, or from the download page."_s;
    return {title, advice.arg(running), notes, u"Open Download Page"_s};
}

UpdateView::Content UpdateView::content() const {
    using namespace updateState;
    const QString again = u"Check Again"_s;
    const QString running = u"You have version %1."_s.arg(text(updater_.currentVersion()));
    const UpdateState &state = *updater_.state;
    if (std::holds_alternative<Checking>(state))
        return {u"Checking for updates"_s, running, {}, {}};
    if (std::holds_alternative<UpToDate>(state))
        return {u"Brimvale is up to date"_s, running, {}, again};
    if (const auto *available = std::get_if<Available>(&state))
        return offer(*available, running);
    if (const auto *downloading = std::get_if<Downloading>(&state))
        return {u"Downloading the update"_s,
                downloading->progress < 1 ? u"You can keep working."_s : u"Checking the download."_s,
                {},
                {}};
    if (std::holds_alternative<ReadyToRelaunch>(state))
        return {u"Ready to install"_s,
                u"Downloaded and signature-checked. Brimvale will quit and reopen on the new version."_s,
                {},
                u"Install"_s};
    if (const auto *failed = std::get_if<Failed>(&state))
        return {u"Could not update"_s, displayedText(failed->message), {}, again};
    const QString howTo =
        u"%1 Your system updates Brimvale together with your other programs, through its software updates or package manager."_s;
    return {u"Software Update"_s,
            updater_.canInstallItself() ? running : howTo.arg(running),
            {},
            u"Check for Updates"_s};
}

void UpdateView::showState() {
    const Content shown = content();
    title_->setText(shown.title);
    text_->setText(shown.text);
    text_->setHidden(shown.text.isEmpty());
    notes_->setPlainText(shown.notes);
    notesCard_->setHidden(shown.notes.isEmpty());
    action_->setText(shown.action);
    action_->setHidden(shown.action.isEmpty());
    action_->setDefault(true);

    const auto *downloading = std::get_if<updateState::Downloading>(&*updater_.state);
    const bool isChecking = std::holds_alternative<updateState::Checking>(*updater_.state);
    stop_->setVisible(isChecking);
    progress_->setHidden(downloading == nullptr && !isChecking);
    const bool isMeasured = downloading != nullptr && downloading->progress > 0;
    progress_->setRange(0, isMeasured ? wholeRange : 0);
    if (isMeasured)
        progress_->setValue(static_cast<int>(downloading->progress * wholeRange));

    lastChecked_->setHidden(!*updater_.lastChecked);
    if (*updater_.lastChecked)
        lastChecked_->setText(u"Last checked %1"_s.arg(text(**updater_.lastChecked)));
    adjustSize(); // to the shown contents
}

void UpdateView::check() {
    updater_.check(false);
    isAnswerDue_ = std::holds_alternative<updateState::Checking>(*updater_.state);
}

/// The check requested by the user has ended.
void UpdateView::answer() {
    isAnswerDue_ = false;
    if (std::holds_alternative<updateState::Idle>(*updater_.state))
        updater_.check(false);
}

/// Otherwise the end of the check would start the one that the user asked for.
void UpdateView::stop() {
    isAnswerDue_ = false;
    updater_.stopCheck();
}

void UpdateView::act() {
    const UpdateState &state = *updater_.state;
    if (std::holds_alternative<updateState::ReadyToRelaunch>(state))
        emit installAsked();
    else if (!std::holds_alternative<updateState::Available>(state))
        check();
    else if (updater_.canInstallItself())
        updater_.downloadAndStage();
    else
        QDesktopServices::openUrl(Updater::downloadPage());
}

} // namespace brimvale
