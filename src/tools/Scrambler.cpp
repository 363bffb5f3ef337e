#include "tools/Scrambler.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <vector>

namespace tidewell {

namespace {

// A scrambled text is, in bytes: version, salt, the text under AES-256-GCM, tag. The version is authenticated
// too.
constexpr std::uint8_t version = 1;
constexpr std::size_t saltSize = 16;
constexpr std::size_t tagSize = 16;
constexpr std::size_t headSize = 1 + saltSize;
constexpr std::size_t keySize = 32;
constexpr std::size_t nonceSize = 12;
constexpr int iterations = 20000;

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
constexpr unsigned digitBits = 6;
constexpr unsigned byteBits = 8;

using TBytes = std::vector<std::uint8_t>;

// Base64 with "-" and "_" and without padding.
std::string ToBase64Url(const TBytes& bytes) {
    std::string text;
    std::uint32_t pending = 0;
    unsigned bits = 0;
    for (const std::uint8_t byte : bytes) {
        pending = (pending << byteBits | byte) & 0xFFFF;
        for (bits += byteBits; bits >= digitBits; bits -= digitBits)
            text += alphabet[pending >> (bits - digitBits) & 0x3F];
    }
    if (bits > 0)
        text += alphabet[pending << (digitBits - bits) & 0x3F];
    return text;
}

// Nothing when the text is not of that form.
std::optional<TBytes> FromBase64Url(std::string_view text) {
    TBytes bytes;
    bytes.reserve(text.size() * digitBits / byteBits);
    std::uint32_t pending = 0;
    unsigned bits = 0;
    for (const char character : text) {
        const auto digit = alphabet.find(character);
        if (digit == std::string_view::npos)
            return std::nullopt;
        pending = (pending << digitBits | static_cast<std::uint32_t>(digit)) & 0xFFFF;
        bits += digitBits;
        if (bits >= byteBits) {
            bits -= byteBits;
            bytes.push_back(static_cast<std::uint8_t>(pending >> bits));
        }
    }
    // What is left over is the filling of the last digit.
    if (bits == digitBits || (pending & ((1U << bits) - 1)) != 0)
        return std::nullopt;
    return bytes;
}

struct TFreeContext {
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using TContext = std::unique_ptr<EVP_CIPHER_CTX, TFreeContext>;

void Check(bool done, const char* what) {
    if (!done)
        throw std::runtime_error(std::string("cannot ") + what);
}

int Size(std::size_t size) {
    Check(size <= static_cast<std::size_t>(std::numeric_limits<int>::max()), "take a text as long as this");
    return static_cast<int>(size);
}

// The cipher set up with key and nonce, both stretched from the key's text and the salt in the head, and with
// the head as the data that is authenticated only. The salt is never used twice, and so the nonce is not
// either.
TContext StartCipher(std::string_view key, std::span<const std::uint8_t> head, int encrypt) {
    std::array<std::uint8_t, keySize + nonceSize> secret{};
    const auto salt = head.subspan(1, saltSize);
    Check(PKCS5_PBKDF2_HMAC(key.data(), Size(key.size()), salt.data(), Size(salt.size()), iterations,
                            EVP_sha256(), Size(secret.size()), secret.data()) == 1,
          "stretch the key");
    TContext context(EVP_CIPHER_CTX_new());
    Check(context && EVP_CipherInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, secret.data(),
                                       secret.data() + keySize, encrypt) == 1,
          "set up the cipher");
    int written = 0;
    Check(EVP_CipherUpdate(context.get(), nullptr, &written, head.data(), Size(head.size())) == 1,
          "set up the cipher");
    return context;
}

} // namespace

std::string ScrambleText(std::string_view clear, std::string_view key) {
    TBytes bytes(headSize + clear.size() + tagSize);
    bytes[0] = version;
    Check(RAND_bytes(bytes.data() + 1, Size(saltSize)) == 1, "find random numbers");
    const TContext context = StartCipher(key, std::span(bytes).first(headSize), 1);
    const TBytes text(clear.begin(), clear.end());
    std::uint8_t* const body = bytes.data() + headSize;
    int written = 0;
    Check(EVP_CipherUpdate(context.get(), body, &written, text.data(), Size(text.size())) == 1 &&
              EVP_CipherFinal_ex(context.get(), body + written, &written) == 1 &&
              EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_GET_TAG, Size(tagSize), body + clear.size()) ==
                  1,
          "scramble the text");
    return ToBase64Url(bytes);
}

std::string UnscrambleText(std::string_view scrambled, std::string_view key) {
    const auto decoded = FromBase64Url(scrambled);
    if (!decoded || decoded->size() < headSize + tagSize || decoded->front() != version)
        throw std::runtime_error("this is no scrambled text");
    TBytes bytes = *decoded;
    const std::size_t textSize = bytes.size() - headSize - tagSize;
    const TContext context = StartCipher(key, std::span(bytes).first(headSize), 0);
    std::uint8_t* const body = bytes.data() + headSize;
    TBytes clear(textSize);
    int written = 0;
    Check(EVP_CipherUpdate(context.get(), clear.data(), &written, body, Size(textSize)) == 1 &&
              EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_SET_TAG, Size(tagSize), body + textSize) == 1,
          "unscramble the text");
    if (EVP_CipherFinal_ex(context.get(), clear.data() + written, &written) != 1)
        throw std::runtime_error("the text was changed, or scrambled with another key");
    return {clear.begin(), clear.end()};
}

} // namespace tidewell
