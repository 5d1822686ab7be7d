#pragma once

namespace brimvale {

/// The panes of the privacy settings of macOS that a user may need.
enum class PrivacyPane { fullDiskAccess, appManagement };

/// Opens a pane of the system's privacy settings.
void openPrivacySettings(PrivacyPane pane);

} // namespace brimvale
