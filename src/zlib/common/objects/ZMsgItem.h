// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"

#include <boost/shared_ptr.hpp>

#include <concepts>
#include <cstdint>
#include <string_view>
#include <utility>

namespace orvane
{

class ZDocument;
class ZFile;
class ZObject;
class ZPluginWindow;
class ZWindow;

/// The name of a type of message field; null for a type that no message can carry. A higher row
/// that sends a type of its own adds a specialisation beside that type.
template <typename T>
inline constexpr const char* kMsgTypeName = nullptr;

template <>
inline constexpr const char* kMsgTypeName<std::int8_t> = "int8";
template <>
inline constexpr const char* kMsgTypeName<std::uint8_t> = "uint8";
template <>
inline constexpr const char* kMsgTypeName<std::int16_t> = "int16";
template <>
inline constexpr const char* kMsgTypeName<std::uint16_t> = "uint16";
template <>
inline constexpr const char* kMsgTypeName<std::int32_t> = "int32";
template <>
inline constexpr const char* kMsgTypeName<std::uint32_t> = "uint32";
template <>
inline constexpr const char* kMsgTypeName<std::int64_t> = "int64";
template <>
inline constexpr const char* kMsgTypeName<std::uint64_t> = "uint64";
template <>
inline constexpr const char* kMsgTypeName<float> = "float";
template <>
inline constexpr const char* kMsgTypeName<double> = "double";
template <>
inline constexpr const char* kMsgTypeName<bool> = "bool";
template <>
inline constexpr const char* kMsgTypeName<ZString> = "ZString";
template <>
inline constexpr const char* kMsgTypeName<ZPoint> = "ZPoint";
template <>
inline constexpr const char* kMsgTypeName<ZRect> = "ZRect";
template <>
inline constexpr const char* kMsgTypeName<ZColor> = "ZColor";
template <>
inline constexpr const char* kMsgTypeName<boost::shared_ptr<ZObject>> = "shared ZObject";
template <>
inline constexpr const char* kMsgTypeName<boost::shared_ptr<ZDocument>> = "shared ZDocument";
template <>
inline constexpr const char* kMsgTypeName<boost::shared_ptr<ZFile>> = "shared ZFile";
template <>
inline constexpr const char* kMsgTypeName<boost::shared_ptr<ZString>> = "shared ZString";
template <>
inline constexpr const char* kMsgTypeName<ZDocument*> = "ZDocument";
template <>
inline constexpr const char* kMsgTypeName<ZWindow*> = "ZWindow";
template <>
inline constexpr const char* kMsgTypeName<ZPluginWindow*> = "ZPluginWindow";

/// A type that a message can carry.
template <typename T>
concept ZMsgValue = std::copyable<T> && kMsgTypeName<T>
!= nullptr;

/// One field of a message.
class ZMsgItem
{
public:
    ZMsgItem() = default;
    ZMsgItem(const ZMsgItem&) = delete;
    ZMsgItem& operator=(const ZMsgItem&) = delete;
    virtual ~ZMsgItem() = default;

    /// The name of the field's type. [any thread]
    [[nodiscard]] virtual const char* GetType() const { return "none"; }
};

/// A field that holds a copy of a value.
template <ZMsgValue T>
class ZMsgTemplateItem : public ZMsgItem
{
public:
    explicit ZMsgTemplateItem(T value)
        : mValue(std::move(value))
    {
    }

    [[nodiscard]] const char* GetType() const override { return kMsgTypeName<T>; }
    [[nodiscard]] const T& GetValue() const { return mValue; }

private:
    T mValue;
};

}  // namespace orvane
