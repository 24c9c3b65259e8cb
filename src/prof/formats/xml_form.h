// What every XML profile and every XFDF file of ours begins with.
#pragma once

#include <string_view>

namespace tvut {

// The declarations let other programs read the file: they know neither &cr; nor &tab;.
constexpr std::u16string_view xmlHeader =
    u"<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\r\n"
    u"<!-- DTD -->\r\n"
    u"<!DOCTYPE profile [\r\n"
    u" <!ENTITY cr \"&#x000a;<!--CR-->\">\r\n"
    u" <!ENTITY tab \"&#x0009;<!--TAB-->\">\r\n"
    u" <!ELEMENT profile (list*, item*)*>\r\n"
    u"  <!ELEMENT list (list?, item?)*>\r\n"
    u"  <!ATTLIST list name CDATA #REQUIRED>\r\n"
    u"   <!ELEMENT item (#PCDATA)>\r\n"
    u"   <!ATTLIST item name CDATA #REQUIRED>\r\n"
    u"   <!ATTLIST item xml:space (default|preserve) \"preserve\"> ]>\r\n"
    u"<!-- DATA -->\r\n";

// Lines, and what begins one.
constexpr std::u16string_view xmlProfileBegin = u"<profile>\r\n";
constexpr std::u16string_view xmlProfileEnd = u"</profile>\r\n";
constexpr std::u16string_view xmlListBegin = u"<list name=\"";
constexpr std::u16string_view xmlListEnd = u"</list>\r\n";
constexpr std::u16string_view xmlItemBegin = u"<item name=\"";
constexpr std::u16string_view xmlItemEnd = u"</item>\r\n";

constexpr std::string_view xfdfHeader =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
    "<xfdf xmlns=\"http://ns.adobe.com/xfdf/\" xml:space=\"preserve\">\r\n";

} // namespace tvut
