// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zlib/common/objects/ZResources.h"

#include <openssl/evp.h>
#include <openssl/pem.h>

#include <cstdio>

namespace orvane
{

/// Signs a description with the build's key, as the build does: its text without line ends, and the
/// `<` of the signature.
inline std::string signDescription(const std::string& text)
{
    using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
    using Context = std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)>;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
        std::fopen(KESTRUNE_TEST_SIGNING_KEY, "r"), &std::fclose);
    if (!file)
        throw std::runtime_error("no signing key");
    const Key key(PEM_read_PrivateKey(file.get(), nullptr, nullptr, nullptr), &EVP_PKEY_free);
    const Context context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    std::string covered = text + "<";
    std::erase_if(covered, [](char c) { return c == '\n' || c == '\r'; });
    std::array<unsigned char, 256> signature{};
    std::size_t length = signature.size();
    const auto* const bytes = reinterpret_cast<const unsigned char*>(covered.data());
    if (EVP_DigestSignInit(context.get(), nullptr, EVP_sha1(), nullptr, key.get()) != 1 ||
        EVP_DigestSign(context.get(), signature.data(), &length, bytes, covered.size()) != 1)
        throw std::runtime_error("the description cannot be signed");
    std::string result = text + "<signature data=\"";
    for (const unsigned char byte : signature) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02x", byte);
        result += digits.data();
    }
    return result + "\" />\n";
}

/// The resources of a small product: a description named "test.xml", and texts.
struct TestResources
{
    /// A signed description whose `app` has that content.
    explicit TestResources(const std::string& appContent,
                           const std::string& appAttributes = " title=\"Test\"")
        : TestResources(Whole{signDescription("<?xml version=\"1.0\" standalone=\"yes\" ?>\n<app" +
                                              appAttributes + ">\n" + appContent + "</app>\n")})
    {
    }
    /// A complete description.
    struct Whole
    {
        std::string text;
    };
    explicit TestResources(Whole whole)
        : mDescription(std::move(whole.text))
        , mEntries{{{"XML", "test.xml", mDescription.data(),
                     mDescription.data() + mDescription.size()},
                    {"STRING", "strings.txt", kTexts.data(), kTexts.data() + kTexts.size()}}}
        , mResources(mEntries)
    {
    }
    TestResources(TestResources&&) = delete;

    operator const ZResources&() const { return mResources; }

private:
    static constexpr std::string_view kTexts = "7 seven\n";

    const std::string mDescription;
    const std::array<ZResources::Entry, 2> mEntries;
    const ZResources mResources;
};

}  // namespace orvane
