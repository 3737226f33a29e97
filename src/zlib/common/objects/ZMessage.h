// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZMsgItem.h"
#include "zlib/common/objects/ZObject.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace orvane
{

class ZClassRegistry;

/// An id with named, typed fields. The sender builds a message and then passes it on by a shared
/// pointer to const. It does not change after that, so threads can share it.
class ZMessage : public ZObject
{
public:
    explicit ZMessage(std::int32_t id);
    /// Reads a message from a description. The attribute `id` is a name of the message registry.
    /// Each child is a field: its tag is the type, its attributes are `name` and `value`. Unknown
    /// tags are skipped. The class registry makes the objects. Throws ZException when one of the
    /// registries does not know a name. [interface thread]
    ZMessage(const boost::shared_ptr<ZXMLElement>& xml, const ZClassRegistry& classes);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Both throw ZException kNotImplemented: messages are not archived.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;

    [[nodiscard]] std::int32_t GetId() const { return mId; }

    /// A new message with the same id and fields, to which more fields can be added. [any thread]
    [[nodiscard]] boost::shared_ptr<ZMessage> Copy() const;

    /// Adds a field. The caller names the type, as in Add<float>("rate", 44100), because the reader
    /// must ask for the same type. Returns false, with the message unchanged, when the name exists.
    template <ZMsgValue T>
    bool Add(std::string_view name, const std::type_identity_t<T>& value);

    /// Copies the field's value. Returns false, with out unchanged, when there is no field of that
    /// name and type. [any thread]
    template <ZMsgValue T>
    [[nodiscard]] bool Find(std::string_view name, T& out) const;

protected:
    void RemoveItems() { mItems.clear(); }

private:
    void AddField(const boost::shared_ptr<ZXMLElement>& xml, const ZClassRegistry& classes);

    std::int32_t mId;
    // Items do not change, so copies of a message share them.
    std::map<std::string, std::shared_ptr<const ZMsgItem>, std::less<>> mItems;
};

/// Named fields without a message id. One thread at a time. [any thread but the audio thread]
class ZDictionary : public ZMessage
{
public:
    ZDictionary();
    ~ZDictionary() override;
};

/// The identity of an object for the field "elementid": a number that is only compared, never
/// turned into a pointer again. 0 for null. [any thread]
[[nodiscard]] std::uint64_t elementIdOf(const ZObject* object);

template <ZMsgValue T>
bool ZMessage::Add(std::string_view name, const std::type_identity_t<T>& value)
{
    if (mItems.contains(name))
        return false;
    mItems.emplace(name, std::make_shared<const ZMsgTemplateItem<T>>(value));
    return true;
}

template <ZMsgValue T>
bool ZMessage::Find(std::string_view name, T& out) const
{
    const auto found = mItems.find(name);
    if (found == mItems.end())
        return false;
    const auto* item = dynamic_cast<const ZMsgTemplateItem<T>*>(found->second.get());
    if (item)
        out = item->GetValue();
    return item != nullptr;
}

}  // namespace orvane
