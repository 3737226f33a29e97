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

/// A number with named, typed fields. Its sender builds it; once handed on, nobody changes it and
/// it is held by shared pointers to const, which makes it safe to pass between threads.
class ZMessage : public ZObject
{
public:
    explicit ZMessage(std::int32_t id);
    /// Reads a message: the attribute `id` is a name of the message registry; each child is a
    /// field, its tag the type, its attributes `name` and `value` the rest. Tags that name no type
    /// are skipped. Objects are made by the class registry.
    /// Throws ZException -1 when either registry does not know a name.
    ZMessage(const boost::shared_ptr<ZXMLElement>& xml, const ZClassRegistry& classes);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Messages are not archived.
    /// Throws ZException -2.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;

    [[nodiscard]] std::int32_t GetId() const { return mId; }

    /// A new message with the same id and fields, for whoever has to add to one that is shared.
    [[nodiscard]] boost::shared_ptr<ZMessage> Copy() const;

    /// Adds a field. The type is named, as in Add<float>("rate", 44100), since the reader must ask
    /// for the very same one.
    /// False, with nothing changed, when the name is there: a field is never overwritten.
    template <ZMsgValue T>
    bool Add(std::string_view name, const std::type_identity_t<T>& value);

    /// Copies the field's value. False, with out as it was, when there is no field of that name and
    /// type.
    template <ZMsgValue T>
    [[nodiscard]] bool Find(std::string_view name, T& out) const;

protected:
    void RemoveItems() { mItems.clear(); }

private:
    void AddField(const boost::shared_ptr<ZXMLElement>& xml, const ZClassRegistry& classes);

    std::int32_t mId;
    // An item never changes, so copies of a message share it.
    std::map<std::string, std::shared_ptr<const ZMsgItem>, std::less<>> mItems;
};

/// Fields by name without a meaning as a message.
class ZDictionary : public ZMessage
{
public:
    ZDictionary();
    ~ZDictionary() override;
};

/// The identity of an object as the field "elementid" carries it: a number to compare, never a way
/// back to the object. 0 for none.
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
