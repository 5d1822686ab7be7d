#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Views/Components/Bar.h"

#include <deque>
#include <vector>

class QVBoxLayout;

namespace brimvale {

class Removals;
class ResultView;
class Trash;
struct PutBackResult;

/// Shows the result of each removal at the bottom of the window, on any page, until it is dismissed or the
/// next one comes. One that the user should read stays until it is dismissed.
class ResultBanner : public Bar {
    Q_OBJECT

public:
    /// All must outlive it.
    ResultBanner(Removals &removals, Trash &trash, QWidget *parent = nullptr);

private:
    void showRemoval();
    void showPutBack(const PutBackResult &result);
    void add(ResultView *view);
    void dismiss();
    void showNext();
    void showActions();
    void listTrash();
    void confirmEmptying(const std::vector<CleanupEntry> &items);

    Removals &removals_;
    Trash &trash_;
    QVBoxLayout *layout_;
    std::deque<ResultView *> views_; ///< the first one is shown
    bool isListing_ = false;         ///< the Trash, for a question
};

} // namespace brimvale
