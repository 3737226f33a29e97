// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/bundle/BundleText.h"

#include "kestrune/common/identity/KestruneIdentity.h"
#include "pluginwrappers/core/HostParameter.h"
#include "pluginwrappers/core/PlainParameters.h"
#include "pluginwrappers/core/ZPluginCore.h"
#include "pluginwrappers/lv2/Lv2Ports.h"
#include "zlib/common/elements/ZElement.h"

#include <fmt/format.h>

#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace orvane
{

namespace
{

constexpr const char* kPrefixes = R"(@prefix atom: <http://lv2plug.in/ns/ext/atom#> .
@prefix bufsz: <http://lv2plug.in/ns/ext/buf-size#> .
@prefix doap: <http://usefulinc.com/ns/doap#> .
@prefix foaf: <http://xmlns.com/foaf/0.1/> .
@prefix lv2: <http://lv2plug.in/ns/lv2core#> .
@prefix midi: <http://lv2plug.in/ns/ext/midi#> .
@prefix opts: <http://lv2plug.in/ns/ext/options#> .
@prefix owl: <http://www.w3.org/2002/07/owl#> .
@prefix param: <http://lv2plug.in/ns/ext/parameters#> .
@prefix pset: <http://lv2plug.in/ns/ext/presets#> .
@prefix rdf: <http://www.w3.org/1999/02/22-rdf-syntax-ns#> .
@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .
@prefix state: <http://lv2plug.in/ns/ext/state#> .
@prefix ui: <http://lv2plug.in/ns/extensions/ui#> .
@prefix units: <http://lv2plug.in/ns/extensions/units#> .
@prefix urid: <http://lv2plug.in/ns/ext/urid#> .
@prefix xsd: <http://www.w3.org/2001/XMLSchema#> .
)";

/// Room for the messages of one block, which hosts give an event port at least.
constexpr int kEventPortBytes = 8192;

/// Returns a literal in Turtle of any text.
std::string literal(std::string_view text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        switch (c) {
        case '"':
            quoted += "\\\"";
            break;
        case '\\':
            quoted += "\\\\";
            break;
        case '\n':
            quoted += "\\n";
            break;
        case '\r':
            quoted += "\\r";
            break;
        case '\t':
            quoted += "\\t";
            break;
        default:
            quoted += c;
        }
    }
    return quoted + '"';
}

/// Returns a decimal number with a point, as the ranges of ports are written.
std::string decimal(float value)
{
    const std::string text = fmt::format("{}", value);
    return text.find_first_of(".e") == std::string::npos ? text + ".0" : text;
}

std::string presetUri(std::int32_t index)
{
    return fmt::format("<{}#preset-{}>", kLv2Uri, index + 1);
}

std::string unitOf(const ZElement& element)
{
    switch (element.GetUnits()) {
    case ZElement::kGeneric:
        return {};
    case ZElement::kMilliseconds:
        return " ;\n    units:unit units:ms";
    case ZElement::kCents:
        return " ;\n    units:unit units:cent";
    case ZElement::kHertz:
        return " ;\n    units:unit units:hz";
    case ZElement::kSeconds:
        return " ;\n    units:unit units:s";
    case ZElement::kPercent:
        return " ;\n    units:unit units:pc";
    case ZElement::kDecibels:
        return " ;\n    units:unit units:db";
    default:
        throw std::runtime_error("a port's unit has no name in LV2 here");
    }
}

/// Tells a switch, which is off or on, from a choice between two things.
bool isSwitch(const ZElement& element)
{
    return element.CountDiscreteValues() == 2 && *element.GetDiscreteString(1) == "On";
}

std::string choicesOf(const ZElement& element)
{
    if (isSwitch(element))
        return " ;\n    lv2:portProperty lv2:toggled";
    std::string text = " ;\n    lv2:portProperty lv2:integer , lv2:enumeration";
    for (std::int32_t i = 0; i < element.CountDiscreteValues(); ++i)
        text += fmt::format("{} [ rdfs:label {} ; rdf:value {} ]",
                            i == 0 ? " ;\n    lv2:scalePoint" : " ,",
                            literal(element.GetDiscreteString(i)->ToNarrow()), i);
    return text;
}

std::string parameterPort(const ZElement& element, std::uint32_t index)
{
    const bool isChoice = element.GetType() == ZElement::ZDISCRETE;
    const float min = isChoice ? 0.0f : element.Min();
    const float max =
        isChoice ? static_cast<float>(element.CountDiscreteValues() - 1) : element.Max();
    return fmt::format(R"( , [
    a lv2:InputPort , lv2:ControlPort ;
    lv2:index {} ;
    lv2:symbol "{}" ;
    lv2:name {} ;
    lv2:default {} ;
    lv2:minimum {} ;
    lv2:maximum {}{}{}
  ])",
                       index, element.GetName(), literal(plainLabelOf(element)),
                       decimal(plainValueOf(element)), decimal(min), decimal(max),
                       isChoice ? choicesOf(element) : std::string(), unitOf(element));
}

std::string audioPorts()
{
    std::string text;
    for (std::uint32_t i = 0; i < 4; ++i) {
        const bool isInput = i < kLv2AudioOut;
        const bool isLeft = i % 2 == 0;
        text += fmt::format(R"({}[
    a lv2:{}Port , lv2:AudioPort ;
    lv2:index {} ;
    lv2:symbol "{}_{}" ;
    lv2:name "{} {}"
  ])",
                            i == 0 ? "" : " , ", isInput ? "Input" : "Output", i,
                            isInput ? "in" : "out", isLeft ? "left" : "right",
                            isInput ? "In" : "Out", isLeft ? "Left" : "Right");
    }
    return text;
}

std::string servicePorts()
{
    return fmt::format(
        R"( , [
    a lv2:InputPort , atom:AtomPort ;
    lv2:index {} ;
    lv2:symbol "midi_in" ;
    lv2:name "MIDI In" ;
    lv2:designation lv2:control ;
    lv2:portProperty lv2:connectionOptional ;
    atom:bufferType atom:Sequence ;
    atom:supports midi:MidiEvent
  ] , [
    a lv2:OutputPort , atom:AtomPort ;
    lv2:index {} ;
    lv2:symbol "notify" ;
    lv2:name "Notify" ;
    lv2:designation lv2:control ;
    lv2:portProperty lv2:connectionOptional ;
    atom:bufferType atom:Sequence
  ] , [
    a lv2:OutputPort , lv2:ControlPort ;
    lv2:index {} ;
    lv2:symbol "latency" ;
    lv2:name "Latency" ;
    lv2:designation lv2:latency ;
    lv2:portProperty lv2:reportsLatency , lv2:integer , lv2:connectionOptional ;
    lv2:minimum 0 ;
    lv2:maximum 1000000 ;
    units:unit units:frame
  ] , [
    a lv2:InputPort , lv2:ControlPort ;
    lv2:index {} ;
    lv2:symbol "freewheel" ;
    lv2:name "Freewheel" ;
    lv2:designation lv2:freeWheeling ;
    lv2:portProperty lv2:toggled , lv2:connectionOptional , <http://lv2plug.in/ns/ext/port-props#notOnGUI> ;
    lv2:default 0.0 ;
    lv2:minimum 0.0 ;
    lv2:maximum 1.0
  ])",
        static_cast<std::uint32_t>(kLv2MidiIn), static_cast<std::uint32_t>(kLv2Notify),
        static_cast<std::uint32_t>(kLv2Latency), static_cast<std::uint32_t>(kLv2FreeWheel));
}

std::string windowText(const std::string& binary)
{
    return fmt::format(R"(
<{}>
  a ui:X11UI ;
  ui:binary <{}> ;
  lv2:requiredFeature ui:parent , ui:idleInterface , <http://lv2plug.in/ns/ext/instance-access> ;
  lv2:optionalFeature ui:fixedSize , ui:noUserResize , ui:resize , ui:touch , opts:options , urid:map ;
  opts:supportedOption ui:scaleFactor ;
  lv2:extensionData ui:idleInterface , opts:interface .
)",
                       kLv2UiUri, binary);
}

}  // namespace

std::string manifestText(ZPluginCore& core, const std::string& binary)
{
    std::string text = kPrefixes;
    text += fmt::format("\n<{}>\n  a lv2:Plugin ;\n  lv2:binary <{}> ;\n"
                        "  rdfs:seeAlso <plugin.ttl> .\n",
                        kLv2Uri, binary);
    text += fmt::format("\n<{}>\n  a ui:X11UI ;\n  ui:binary <{}> ;\n"
                        "  rdfs:seeAlso <plugin.ttl> .\n",
                        kLv2UiUri, binary);
    for (std::int32_t i = 0; core.GetPrograms().GetName(i); ++i)
        text +=
            fmt::format("\n{}\n  a pset:Preset ;\n  lv2:appliesTo <{}> ;\n  rdfs:label {} ;\n"
                        "  rdfs:seeAlso <presets.ttl> .\n",
                        presetUri(i), kLv2Uri, literal(core.GetPrograms().GetName(i)->ToNarrow()));
    return text;
}

std::string pluginText(ZPluginCore& core, const std::string& binary)
{
    const auto [major, minor, third] = productVersion();
    // LV2 counts releases by even numbers.
    std::string text = fmt::format(
        R"({}
<{}>
  a rdf:Property , owl:DatatypeProperty ;
  rdfs:label "Program" ;
  rdfs:comment "The current program, as a preset file holds it." ;
  rdfs:domain state:State ;
  rdfs:range xsd:string .

<{}>
  a lv2:Plugin , lv2:PitchPlugin , doap:Project ;
  doap:name {} ;
  doap:license <https://www.gnu.org/licenses/gpl-3.0> ;
  doap:maintainer [ foaf:name "Orvane Inc." ] ;
  lv2:minorVersion {} ;
  lv2:microVersion {} ;
  lv2:requiredFeature urid:map ;
  lv2:optionalFeature lv2:hardRTCapable , opts:options , bufsz:boundedBlockLength , state:threadSafeRestore ;
  lv2:extensionData state:interface , opts:interface ;
  opts:supportedOption bufsz:maxBlockLength , param:sampleRate ;
  ui:ui <{}> ;
  lv2:port {}{})",
        kPrefixes, kLv2ProgramUri, kLv2Uri, literal(productName()), 2 * major,
        2 * (minor * 100 + third), kLv2UiUri, audioPorts(), servicePorts());
    std::uint32_t index = kLv2FirstParameter;
    for (const auto& element : plainParametersOf(core))
        text += parameterPort(*element, index++);
    return text + " .\n" + windowText(binary);
}

std::string presetsText(ZPluginCore& core)
{
    std::string text = kPrefixes;
    for (std::int32_t i = 0; core.GetPrograms().GetName(i); ++i) {
        core.GetPrograms().SetCurrent(i);
        core.Deliver();
        text +=
            fmt::format("\n{}\n  a pset:Preset ;\n  lv2:appliesTo <{}> ;\n  rdfs:label {} ;\n"
                        "  state:state [ <{}> {} ] ;\n  lv2:port",
                        presetUri(i), kLv2Uri, literal(core.GetPrograms().GetName(i)->ToNarrow()),
                        kLv2ProgramUri, literal(core.SavePrograms(ZProgramBank::Extent::kCurrent)));
        const char* separator = " ";
        for (const auto& element : plainParametersOf(core)) {
            text += fmt::format("{}[\n    lv2:symbol \"{}\" ;\n    pset:value {}\n  ]", separator,
                                element->GetName(), decimal(plainValueOf(*element)));
            separator = " , ";
        }
        text += " .\n";
    }
    return text;
}

}  // namespace orvane
