// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLSignature.h"

#include "zlib/common/objects/ZSigningKey.h"

#include <openssl/decoder.h>
#include <openssl/err.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orvane
{

namespace
{

constexpr std::string_view kSignatureTag = "<signature";
constexpr std::size_t kDigitsOffset = std::string_view(R"(<signature data=")").size();

using Signature = std::array<unsigned char, 256>;
using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;

/// Restores the thread's list of OpenSSL errors, because the host may use the library too.
class OpenSslErrors
{
public:
    OpenSslErrors() { ERR_set_mark(); }
    ~OpenSslErrors() { ERR_pop_to_mark(); }
    OpenSslErrors(const OpenSslErrors&) = delete;
    OpenSslErrors& operator=(const OpenSslErrors&) = delete;
};

Key readKey(const char* pem)
{
    EVP_PKEY* key = nullptr;
    const std::unique_ptr<OSSL_DECODER_CTX, decltype(&OSSL_DECODER_CTX_free)> decoder(
        OSSL_DECODER_CTX_new_for_pkey(&key, "PEM", nullptr, "RSA", EVP_PKEY_PUBLIC_KEY, nullptr,
                                      nullptr),
        &OSSL_DECODER_CTX_free);
    const auto* bytes = reinterpret_cast<const unsigned char*>(pem);
    std::size_t length = std::strlen(pem);
    if (decoder)
        OSSL_DECODER_from_data(decoder.get(), &bytes, &length);
    return {key, &EVP_PKEY_free};
}

std::optional<Signature> readSignature(std::string_view digits)
{
    Signature signature{};
    if (digits.size() < 2 * signature.size())
        return {};
    const char* position = digits.data();
    for (unsigned char& byte : signature) {
        const auto result = std::from_chars(position, position + 2, byte, 16);
        if (result.ec != std::errc() || result.ptr != position + 2)
            return {};
        position += 2;
    }
    return signature;
}

std::string withoutLineEnds(std::string_view text)
{
    std::string joined;
    joined.reserve(text.size());
    std::copy_if(text.begin(), text.end(), std::back_inserter(joined),
                 [](char character) { return character != '\r' && character != '\n'; });
    return joined;
}

bool verify(const std::string& covered, const Signature& signature)
{
    const OpenSslErrors errors;
    const Key key = readKey(kSigningPublicKey);
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                          &EVP_MD_CTX_free);
    if (!key || !context)
        return false;
    // The default padding is PKCS #1 v1.5.
    if (EVP_DigestVerifyInit(context.get(), nullptr, EVP_sha1(), nullptr, key.get()) != 1)
        return false;
    const auto* bytes = reinterpret_cast<const unsigned char*>(covered.data());
    return EVP_DigestVerify(context.get(), signature.data(), signature.size(), bytes,
                            covered.size()) == 1;
}

}  // namespace

bool VerifySignature(const char* text, std::int32_t length)
{
    if (!text || length <= 0)
        return false;
    const std::string_view view(text, static_cast<std::size_t>(length));
    const std::size_t tag = view.find(kSignatureTag);
    if (tag == std::string_view::npos || view.size() - tag < kDigitsOffset)
        return false;
    const auto signature = readSignature(view.substr(tag + kDigitsOffset));
    return signature && verify(withoutLineEnds(view.substr(0, tag + 1)), *signature);
}

}  // namespace orvane
