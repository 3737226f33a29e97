#include "kestrune/common/KestruneMessages.h"
#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZMessage.h"
#include "zlib/common/ZString.h"
#include "zlib/common/ZStringTable.h"
#include "zlib/common/ZXMLSignature.h"

#include <gtest/gtest.h>

#include "resources/Description.h"

#include <algorithm>
#include <functional>
#include <set>

namespace orvane
{

namespace
{

struct Command
{
    const char* name;
    const char* target;
    const char* menu;
    std::int32_t message;
};

// The interface, menus and projects of hosts name commands; menu identifiers follow the order.
constexpr Command kCommands[] = {
    {"cmdFileNewMediaFile", "doc", "Create Blank media File", ZFILENEW},
    {"cmdSavePreset", "doc", "Save Settings", ZPRESETSAVE},
    {"cmdLoadPreset", "doc", "Load Settings", ZPRESETLOAD},
    {"cmdSetDefaults", "doc", "Reset Settings", ZSETDEFAULTS},
    {"cmdSaveToPresetA", "doc", "Save To Preset Memory A", PLUGINSAVETOPRESETA},
    {"cmdRecallPresetA", "doc", "Recall Preset Memory A", PLUGINRECALLPRESETA},
    {"cmdSaveToPresetB", "doc", "Save To Preset Memory B", PLUGINSAVETOPRESETB},
    {"cmdRecallPresetB", "doc", "Recall Preset Memory B", PLUGINRECALLPRESETB},
    {"cmdSaveToPresetC", "doc", "Save To Preset Memory C", PLUGINSAVETOPRESETC},
    {"cmdRecallPresetC", "doc", "Recall Preset Memory C", PLUGINRECALLPRESETC},
    {"cmdSaveToPresetD", "doc", "Save To Preset Memory D", PLUGINSAVETOPRESETD},
    {"cmdRecallPresetD", "doc", "Recall Preset Memory D", PLUGINRECALLPRESETD},
    {"cmdCustomScaleDone", "doc", "Save Custom Scale", KESTRUNECUSTOMSCALEDONE},
    {"cmdCustomScaleCancel", "doc", "Cancel Custom Scale", KESTRUNECUSTOMSCALECANCEL},
    {"cmdOrvaneHomePage", "app", "Orvane Home Page...", ZGOTOURL},
};

/// The message of a command; messages of commands hold no objects, so no class is asked for.
ZMessage messageOf(const ZXMLElement& command)
{
    return {command.GetChild("message"), ZClassRegistry(nullptr)};
}

ZString fieldOf(const ZXMLElement& command, const char* field)
{
    ZString text;
    EXPECT_TRUE((messageOf(command).Find<ZString>(field, text))) << field;
    return text;
}

bool verifies(const std::string& text)
{
    return VerifySignature(text.data(), static_cast<std::int32_t>(text.size()));
}

/// What the reader would take for something else than what the writer of this tag meant; empty
/// when there is nothing. Open holds the names of the tags that are open.
std::string faultOf(std::string_view tag, std::vector<std::string>& open)
{
    const std::string name(tag.substr(0, tag.find(' ')));
    if (std::ranges::any_of(tag, [](char c) { return c == '\t' || c == '\r' || c == '\n'; }))
        return "white space that is no blank";
    if (std::ranges::count(tag, '"') % 2 != 0)
        return "a value that ends the tag";
    if (tag.ends_with('/'))
        return tag.ends_with(" /") ? "" : "an element that does not close itself";
    if (name.starts_with('?') || name.starts_with('!'))
        return "";
    if (!name.starts_with('/')) {
        open.push_back(name);
        return "";
    }
    if (open.empty() || open.back() != name.substr(1))
        return "a closing tag of another element";
    open.pop_back();
    return "";
}

void forEachElement(const ZXMLDocument& document,
                    const std::function<void(const ZXMLElement&)>& visit)
{
    for (const auto& child : childrenOf(document)) {
        visit(*child);
        forEachElement(*child, visit);
    }
}

}  // namespace

TEST(DescriptionTest, IsFoundWithoutCaseAndSigned)
{
    const auto bytes = kestruneResources().Find("xml", "Kestrune_VST.XML");
    ASSERT_TRUE(bytes);
    EXPECT_EQ(bytes->size(), descriptionText().size());
    EXPECT_TRUE(verifies(std::string(descriptionText())));
    EXPECT_TRUE(
        HasValidDeclaration(descriptionText().data(), static_cast<std::int32_t>(bytes->size())));
    EXPECT_FALSE(kestruneResources().Find("XML", "kestrune.xml"));
    EXPECT_FALSE(kestruneResources().Find("STRING", "kestrune_vst.xml"));
}

TEST(DescriptionTest, DoesNotVerifyWithAByteAltered)
{
    std::string text(descriptionText());
    const std::size_t covered = text.find("<signature") + 1;
    for (std::size_t i = 0; i < covered; i += 601) {
        text[i] = static_cast<char>(text[i] ^ 0x40);
        EXPECT_FALSE(verifies(text)) << i;
        text[i] = static_cast<char>(text[i] ^ 0x40);
    }
    EXPECT_TRUE(verifies(text));
}

TEST(DescriptionTest, EveryTagReadsAsItLooks)
{
    const std::string_view text = descriptionText();
    std::vector<std::string> open;
    for (std::size_t i = text.find('<'); i != text.npos; i = text.find('<', i)) {
        const std::size_t end = std::min(text.find('>', i), text.size());
        const std::string_view tag = text.substr(i + 1, end - i - 1);
        ASSERT_EQ(faultOf(tag, open), "") << tag;
        i = end;
    }
    EXPECT_TRUE(open.empty());
}

TEST(DescriptionTest, HoldsItsSectionsInTheOrderOfBuilding)
{
    const ZXMLElement app = at(description(), {"app"});
    EXPECT_STREQ(app.GetAttribute("identifier"), "com.orvane.cantorel-mini-vst");
    EXPECT_STREQ(app.GetAttribute("title"), "Cantorel Mini");
    std::vector<std::string> sections;
    for (const auto& section : childrenOf(app))
        sections.push_back(section->GetName());
    EXPECT_EQ(sections, (std::vector<std::string>{"commandlist", "windowmanager", "audiomanager",
                                                  "documentmanager", "startup"}));
    EXPECT_EQ(outlineOf(at(app, {"startup"})), "startup\n"
                                               " startupitem command=cmdFileNewMediaFile\n");
    EXPECT_EQ(outlineOf(at(app, {"audiomanager"})), "audiomanager\n"
                                                    " docchange mode=change\n"
                                                    "  doctype name=Media File\n"
                                                    " drivermodel win=None macos=None\n");
}

TEST(DescriptionTest, HoldsTheCommands)
{
    const auto commands = childrenOf(at(description(), {"app", "commandlist"}));
    ASSERT_EQ(commands.size(), std::size(kCommands));
    for (std::size_t i = 0; i < commands.size(); ++i) {
        const Command& expected = kCommands[i];
        EXPECT_EQ(tagOf(*commands[i]),
                  std::string("command name=") + expected.name + " target=" + expected.target);
        EXPECT_EQ(tagOf(at(*commands[i], {"menu"})), std::string("menu name=") + expected.menu);
        EXPECT_EQ(commands[i]->GetChildCount(), 2) << expected.name;
        EXPECT_EQ(messageOf(*commands[i]).GetId(), expected.message) << expected.name;
    }
    EXPECT_EQ(fieldOf(*commands.front(), "filename"), ZString("Kestrune"));
    EXPECT_EQ(fieldOf(*commands.back(), "URL"), ZString("https://www.orvane.example/"));
}

TEST(DescriptionTest, HoldsTheDocumentTypeWithItsElementsAndNetwork)
{
    const ZXMLElement manager = at(description(), {"app", "documentmanager"});
    EXPECT_EQ(tagOf(manager), "documentmanager name=Media File type=sdi");
    const ZXMLElement type = at(manager, {"documenttypes", "doctype"});
    EXPECT_EQ(tagOf(type), "doctype class=KestruneDocumentClass name=Kestrune prefs=true");

    std::string names;
    for (const auto& element : childrenOf(at(type, {"elements"}))) {
        names += std::string(element->GetAttribute("name")) + ":";
        EXPECT_STREQ(element->GetAttribute("class"), "ZElementClass");
        EXPECT_FALSE(element->HasAttribute("archivable")) << names;
        EXPECT_FALSE(element->HasAttribute("exposed")) << names;
        for (std::int32_t i = 0; i < element->GetChildCount("discrete"); ++i)
            names += std::string(" ") + element->GetChild("discrete", i)->GetAttribute("name");
        names += "\n";
    }
    EXPECT_EQ(names, "TuningHistory:\n"
                     "AcceptMIDI: Ignore Listen\n"
                     "PresetAActive: Inactive Active\n"
                     "PresetBActive: Inactive Active\n"
                     "PresetCActive: Inactive Active\n"
                     "PresetDActive: Inactive Active\n");
    EXPECT_EQ(outlineOf(at(type, {"networks"})),
              "networks\n"
              " network type=output\n"
              "  bay name=KestruneNetwork class=ZSignalBayClass\n"
              "   bays\n"
              "    bay name=PsolaBay class=ZPsolaBayClass numchannels=2\n"
              "   routes\n"
              "   publish bay=PsolaBay import=0\n"
              "   publish bay=PsolaBay import=1\n"
              "   publish bay=PsolaBay export=0\n"
              "   publish bay=PsolaBay export=1\n");
}

TEST(DescriptionTest, LabelsByNumberReadAsTheStringTableHasThem)
{
    const ZStringTable strings(kestruneResources().FindText("STRING", "strings.txt").value());
    std::set<std::int32_t> keys;
    forEachElement(description(), [&](const ZXMLElement& element) {
        if (!element.HasAttribute("key") || !element.IsNamed("label"))
            return;
        ZString text;
        EXPECT_TRUE(strings.Find(element.GetInt32("key"), text)) << tagOf(element);
        EXPECT_EQ(text, *element.GetAttributeString("text"));
        EXPECT_TRUE(keys.insert(element.GetInt32("key")).second) << tagOf(element);
    });
    EXPECT_EQ(keys.size(), 5u);
}

}  // namespace orvane
