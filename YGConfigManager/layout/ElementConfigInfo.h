// SPDX-License-Identifier: MIT
//
// One element of a page: a leaf view. A plain record, held by shared pointers; elements are always
// shared and have no copy operation. Not synchronised: a record that one thread changes must not be
// read by another.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/text/OwnedText.h"

namespace yg {

class YG_EXPORT ElementConfigInfo {
public:
    /// Names in the order in which the file lists them; null for none.
    using Names = std::shared_ptr<std::vector<std::string>>;

    /// The element's name, its kind of view ("name"); never empty in an element read from a file.
    const std::optional<std::string>& elementName() const { return elementName_; }
    void setElementName(OwnedText name) { elementName_ = std::move(name); }

    /// Free parameter text for the view ("param").
    const std::optional<std::string>& elementParam() const { return elementParam_; }
    void setElementParam(OwnedText param) { elementParam_ = std::move(param); }

    /// Free property text for the view ("property").
    const std::optional<std::string>& elementProperty() const { return elementProperty_; }
    void setElementProperty(OwnedText property) { elementProperty_ = std::move(property); }

    /// The element's identifier ("uuid").
    const std::optional<std::string>& elementUuid() const { return elementUuid_; }
    void setElementUuid(OwnedText uuid) { elementUuid_ = std::move(uuid); }

    /// The element event group of the event configuration that belongs to the element ("event").
    const std::optional<std::string>& elementEvent() const { return elementEvent_; }
    void setElementEvent(OwnedText event) { elementEvent_ = std::move(event); }

    /// Where the element's events go ("event_dispatch_dest"): names between ";". Null when the
    /// attribute is missing or empty. Spelt so in the interface.
    const Names& eventDispathDestArray() const { return eventDispathDestArray_; }
    void setEventDispathDestArray(Names names) { eventDispathDestArray_ = std::move(names); }

    /// Whose events the element receives ("event_dispatch_src"), in the same form. Spelt
    /// so in the interface.
    const Names& eventDispathSrcArray() const { return eventDispathSrcArray_; }
    void setEventDispathSrcArray(Names names) { eventDispathSrcArray_ = std::move(names); }

    /// The element takes the keyboard focus first ("is_first_responder"). Spelt so in the
    /// interface.
    bool isFristReponder() const { return isFristReponder_; }
    void setIsFristReponder(bool is) { isFristReponder_ = is; }

    /// The element receives events even when it is not active ("always_recv_event").
    bool alwaysRecvEvent() const { return alwaysRecvEvent_; }
    void setAlwaysRecvEvent(bool always) { alwaysRecvEvent_ = always; }

    /// The element's events do not switch the style ("event_not_change_style").
    bool eventNotChangeStyle() const { return eventNotChangeStyle_; }
    void setEventNotChangeStyle(bool isNot) { eventNotChangeStyle_ = isNot; }

    /// One line for debugging: class and address, name, parameter and identifier; an absent text
    /// prints as "(null)". "" when memory does not suffice.
    std::string description() const;

private:
    std::optional<std::string> elementName_;
    std::optional<std::string> elementParam_;
    std::optional<std::string> elementProperty_;
    std::optional<std::string> elementUuid_;
    std::optional<std::string> elementEvent_;
    Names eventDispathDestArray_;
    Names eventDispathSrcArray_;
    bool isFristReponder_ = false;
    bool alwaysRecvEvent_ = false;
    bool eventNotChangeStyle_ = false;
};

template <>
struct Description<ElementConfigInfo> {
    using Element = ElementConfigInfo;
    using enum AttributeKind;
    static constexpr std::tuple fields{
        Field{
            "elementName", &Element::elementName, &Element::setElementName,
            AttributeInfo{
                .name = "name", .sentence = "The kind of view that is shown.", .isRequired = true}},
        Field{"elementParam", &Element::elementParam, &Element::setElementParam,
              AttributeInfo{"param", text, "A parameter of the view, which knows its meaning."}},
        Field{
            "elementProperty", &Element::elementProperty, &Element::setElementProperty,
            AttributeInfo{"property", text, "Properties of the view, which knows their meaning."}},
        Field{"elementUuid", &Element::elementUuid, &Element::setElementUuid,
              AttributeInfo{"uuid", text,
                            "The name by which other elements send it events or receive its own.",
                            Naming::element, true}},
        Field{"elementEvent", &Element::elementEvent, &Element::setElementEvent,
              AttributeInfo{"event", text, "The group of events that the element takes part in.",
                            Naming::eventGroup}},
        Field{"eventDispathDestArray", &Element::eventDispathDestArray,
              &Element::setEventDispathDestArray,
              AttributeInfo{"event_dispatch_dest", nameList,
                            "The elements that receive this element's events, by their uuid, with "
                            "\";\" between them.",
                            Naming::element}},
        Field{"eventDispathSrcArray", &Element::eventDispathSrcArray,
              &Element::setEventDispathSrcArray,
              AttributeInfo{"event_dispatch_src", nameList,
                            "The elements whose events this element receives, by their uuid, with "
                            "\";\" between them.",
                            Naming::element}},
        Field{"isFristReponder", &Element::isFristReponder, &Element::setIsFristReponder,
              AttributeInfo{"is_first_responder", flag,
                            "The element takes the keyboard focus first."}},
        Field{"alwaysRecvEvent", &Element::alwaysRecvEvent, &Element::setAlwaysRecvEvent,
              AttributeInfo{"always_recv_event", flag,
                            "The element receives events even when it is not active."}},
        Field{"eventNotChangeStyle", &Element::eventNotChangeStyle,
              &Element::setEventNotChangeStyle,
              AttributeInfo{"event_not_change_style", flag,
                            "The element's events do not switch the page."}},
    };
};

}  // namespace yg
