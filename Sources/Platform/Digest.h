#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace brimvale {

/// The SHA-256 digest (FIPS 180-4) of bytes added in pieces.
class Sha256 {
public:
    Sha256();
    ~Sha256();
    Sha256(const Sha256 &) = delete;
    Sha256 &operator=(const Sha256 &) = delete;

    void add(std::string_view bytes);

    /// The digest of everything added, as 64 hexadecimal digits in lower case. The object then starts again.
    [[nodiscard]] std::string finish();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace brimvale
