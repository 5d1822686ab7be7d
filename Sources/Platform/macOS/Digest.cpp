#include "Platform/Digest.h"

#include "Base/Hex.h"

#include <CommonCrypto/CommonDigest.h>
#include <array>
#include <limits>

namespace brimvale {

struct Sha256::State {
    CC_SHA256_CTX context;
};

Sha256::Sha256() : state_(std::make_unique<State>()) {
    CC_SHA256_Init(&state_->context);
}

Sha256::~Sha256() = default;

void Sha256::add(std::string_view bytes) {
    // One call takes at most 32 bits of length.
    constexpr std::size_t most = std::numeric_limits<CC_LONG>::max();
    while (!bytes.empty()) {
        const std::string_view part = bytes.substr(0, most);
        CC_SHA256_Update(&state_->context, part.data(), static_cast<CC_LONG>(part.size()));
        bytes.remove_prefix(part.size());
    }
}

std::string Sha256::finish() {
    std::array<unsigned char, CC_SHA256_DIGEST_LENGTH> digest{};
    CC_SHA256_Final(digest.data(), &state_->context);
    CC_SHA256_Init(&state_->context);
    return hexString({reinterpret_cast<const char *>(digest.data()), digest.size()});
}

} // namespace brimvale
