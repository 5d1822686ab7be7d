#include "Views/Removing/ReclaimLabel.h"

#include "Base/Background.h"
#include "Core/Reclaim/ReclaimTexts.h"
#include "Core/Text/Formatting.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QThreadPool>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr std::chrono::milliseconds timeBetweenTicks{250};
constexpr std::chrono::minutes longestUse{1}; // programs open files, and snapshots are made
constexpr int longestName = 220;              // in points
constexpr int mostQuestions = 4;

QString linesOf(const Reclaim &reclaim, RemovalMode mode) {
    QStringList lines;
    for (const std::string &line : reclaimLines(reclaim, mode))
        lines.append(displayedText(line));
    return lines.join(u'\n');
}

/// Threads of their own: a question to a disk that does not answer must not keep other work waiting.
QThreadPool &questions() {
    static QThreadPool *const pool = [] {
        auto *made = new QThreadPool;
        made->setMaxThreadCount(mostQuestions);
        qAddPostRoutine([] { questions().waitForDone(); });
        return made;
    }();
    return *pool;
}

} // namespace

ReclaimLabel::ReclaimLabel(Type::Size size, QWidget *parent) : TextLabel(size, Tone::secondary, parent) {
    setObjectName(QStringLiteral("reclaim"));
    setWordWrap(true);
    setAlignment(Qt::AlignTop | Qt::AlignLeading);
    hide();
    wait_.setSingleShot(true);
    connect(&wait_, &QTimer::timeout, this, &ReclaimLabel::begin);
    connect(&ticks_, &QTimer::timeout, this, &ReclaimLabel::showProgress);
}

ReclaimLabel::~ReclaimLabel() {
    cancel();
}

void ReclaimLabel::ask(std::vector<FileURL> items, std::chrono::milliseconds delay, LinkPlaces linkPlaces) {
    cancel();
    items_ = std::move(items);
    linkPlaces_ = std::move(linkPlaces);
    answer_.reset();
    setToolTip({});
    showLines(items_.empty() ? QString() : u"Checking how much this frees…"_s);
    if (items_.empty())
        wait_.stop();
    else
        wait_.start(delay);
}

void ReclaimLabel::cancel() {
    ticks_.stop();
    if (progress_ != nullptr)
        progress_->cancelled.set();
}

void ReclaimLabel::begin() {
    if (items_.empty() || progress_ != nullptr) // the answer to a dropped question comes first
        return;
    progress_ = std::make_shared<ReclaimProgress>();
    ticks_.start(timeBetweenTicks);
    inBackground(
        questions(), this,
        [items = std::exchange(items_, {}), linkPlaces = std::exchange(linkPlaces_, {}),
         progress = progress_] { return reclaimOf(items, *progress, linkPlaces); },
        [this](const Reclaim &reclaim) {
            const bool isDropped = progress_->cancelled.isSet();
            progress_.reset();
            if (isDropped) {
                if (!wait_.isActive())
                    begin();
                return;
            }
            ticks_.stop();
            answer_ = reclaim;
            isRecent_.setRemainingTime(longestUse);
            showAnswer();
            announce();
        });
}

void ReclaimLabel::setAnswer(const Reclaim &answer) {
    ask({});
    answer_ = answer;
    showAnswer();
}

std::optional<Reclaim> ReclaimLabel::recentAnswer() const {
    return isRecent_.hasExpired() ? std::nullopt : answer_;
}

/// Tells screen readers the answer, but not the figures on the way to it.
void ReclaimLabel::announce() {
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void ReclaimLabel::setMode(RemovalMode mode) {
    mode_ = mode;
    if (answer_)
        showAnswer();
}

void ReclaimLabel::showAnswer() {
    const QString lines = linesOf(*answer_, mode_);
    const QString shown = linesOf(withShortNames(*answer_), mode_);
    setToolTip(shown == lines ? QString() : asToolTip(lines));
    showLines(shown);
}

/// A path without a space can't be wrapped.
Reclaim ReclaimLabel::withShortNames(Reclaim reclaim) const {
    const auto shorten = [this](std::string &name) {
        name = fontMetrics()
                   .elidedText(displayedText(name), Qt::ElideMiddle, Type::scaled(longestName))
                   .toStdString();
    };
    for (Reclaim::Part &part : reclaim.snapshots)
        shorten(part.name);
    for (Reclaim::Part &part : reclaim.programs)
        shorten(part.name);
    for (Reclaim::Link &link : reclaim.links)
        if (!link.otherName.empty())
            shorten(link.otherName);
    return reclaim;
}

void ReclaimLabel::showProgress() {
    const std::int64_t files = progress_ != nullptr ? progress_->files.load() : 0;
    if (files > 0)
        showLines(u"Checking how much this frees… %1"_s.arg(counted(files, "file")));
}

void ReclaimLabel::showLines(const QString &lines) {
    const bool isTaller = lines.count(u'\n') != text().count(u'\n');
    setText(lines);
    const bool isShownNow = isHidden() == !lines.isEmpty();
    setHidden(lines.isEmpty());
    if (isTaller || isShownNow)
        emit linesChanged();
}

} // namespace brimvale
