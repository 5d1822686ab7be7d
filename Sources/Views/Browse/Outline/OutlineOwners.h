#pragma once

#include "Base/StopFlag.h"
#include "Core/Scan/FSNode.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace brimvale {

/// The names of the owners of nodes. They are read in the background when they are first asked for, so only
/// for rows that are shown.
class OutlineOwners : public QObject {
    Q_OBJECT

public:
    explicit OutlineOwners(QObject *parent = nullptr);
    ~OutlineOwners() override;
    OutlineOwners(const OutlineOwners &) = delete;
    OutlineOwners &operator=(const OutlineOwners &) = delete;

    /// The owner's name; empty while it is not known, and for an aggregate. `arrived` follows.
    [[nodiscard]] QString nameFor(const FSNode &node);

    /// Drops all names, because the tree was replaced or may have changed.
    void forget();

signals:
    /// Names that were asked for are known now.
    void arrived();

private:
    using Names = std::vector<std::pair<std::string, QString>>; ///< by path

    void askNext();

    std::unordered_map<std::string, QString> names_; ///< by path; empty while it is not known
    std::vector<std::string> wanted_;
    StopFlag outdated_; ///< of the question that is being answered
    QTimer soon_;       ///< until the other visible rows have asked, too
    bool isAsking_ = false;
};

} // namespace brimvale
