#include "Views/Browse/Outline/OutlineMarks.h"
#include "Views/Browse/Outline/OutlineModel.h"

#include <variant>

namespace brimvale {

namespace {

/// Half of the time in which a window draws one frame.
constexpr std::chrono::milliseconds filterSlice{8};

} // namespace

bool OutlineModel::hides(const FSNode &node) const {
    return isFiltered() && &node != tree_.get() &&
           !OutlineMark::has(node, any(OutlineMark::filters[*marksInForce_]));
}

bool OutlineModel::isMatch(const FSNode &node) const {
    return !isFiltered() || OutlineMark::has(node, OutlineMark::filters[*marksInForce_].matches);
}

bool OutlineModel::leadsToMatch(const FSNode &folder) const {
    return isFiltered() && OutlineMark::has(folder, OutlineMark::filters[*marksInForce_].holds);
}

bool OutlineModel::isShown(const FSNode &node) const {
    return !hides(node) || OutlineMark::has(node, OutlineMark::holdsFocused);
}

QString OutlineModel::setFilter(const QString &text, std::uint32_t moment) {
    if (text == filter_)
        return {};
    const auto read = FileFilter::read(text.toStdString(), moment);
    if (const auto *fault = std::get_if<FileFilter::Fault>(&read))
        return QString::fromStdString(fault->sentence);
    filter_ = text;
    fileFilter_ = std::get<FileFilter>(read);
    startFilter();
    return {};
}

void OutlineModel::startFilter() {
    passTimer_.stop();
    pass_.reset();
    if (!fileFilter_.acceptsAll() && tree_ != nullptr) {
        marksOfPass_ = marksInForce_ == 0U ? 1 : 0;
        pass_.emplace(*tree_, fileFilter_, OutlineMark::filters[marksOfPass_]);
        passTimer_.start(0);
    } else if (isFiltered()) {
        rearrange(NoLayoutChangeHint, [this] { marksInForce_.reset(); });
        result_ = {};
        emit filtered(0);
    }
}

void OutlineModel::advanceFilter() {
    if (!pass_->advance(filterSlice))
        return;
    result_ = pass_->result();
    passTimer_.stop();
    pass_.reset();
    rearrange(NoLayoutChangeHint, [this] { marksInForce_ = marksOfPass_; });
    emit filtered(result_.matches.count);
}

void OutlineModel::setFocused(FSNode *folder) {
    if (isFiltered())
        rearrange(NoLayoutChangeHint, [this, folder] { markFocused(folder); });
    else
        markFocused(folder);
}

void OutlineModel::markFocused(FSNode *folder) {
    for (FSNode *node = focused_; node != nullptr; node = node->parent())
        OutlineMark::remove(*node, OutlineMark::holdsFocused);
    focused_ = folder;
    for (FSNode *node = focused_; node != nullptr; node = node->parent())
        OutlineMark::add(*node, OutlineMark::holdsFocused);
}

} // namespace brimvale
