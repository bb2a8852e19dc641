// XML texts, each made to cost a parser as much as its length can.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace ostrel {

struct HostileXml {
  std::string name;
  std::string text;  // UTF-8
};

/// The piece, with its number in the place of "#", as often as it goes into the length.
inline std::string Repeated(const std::string& piece, std::size_t length) {
  std::string text;
  for (std::size_t number = 0; text.size() < length; ++number) {
    const std::size_t place = piece.find('#');
    text += piece.substr(0, place);
    if (place != std::string::npos) text += std::to_string(number) + piece.substr(place + 1);
  }
  return text;
}

/// Of about so many bytes each, around a root element of this name.
inline std::vector<HostileXml> HostileXmlTexts(std::size_t length, const std::string& root) {
  const std::string open = "<" + root + ">";
  const std::string close = "</" + root + ">";
  const auto much = [&](const std::string& piece) { return Repeated(piece, length); };
  const auto within = [&](const std::string& piece) { return open + much(piece) + close; };
  const auto typed = [&](const std::string& declarations) {
    return "<!DOCTYPE " + root + " [" + declarations + "]>" + open + close;
  };
  std::vector<HostileXml> all;
  for (const char* piece : {"<?a?>",
                            "<?a b?>",
                            "<!---->",
                            "<!-- - - -->",
                            "<![CDATA[]]>",
                            "<![CDATA[]]]]>",
                            "&#65;",
                            "&#x1F600;",
                            "&amp;",
                            "&lt;&gt;",
                            "]",
                            "\r\n",
                            " ",
                            "\xF0\x9F\x98\x80",
                            "<b></b>",
                            "<b#/>",
                            "<b>1</b>",
                            "<b c#='1'/>",
                            "<b c='&#65;&amp;'/>",
                            "<b xml:space='preserve'/>",
                            "<b xml:id='i#'/>",
                            "<b xmlns='u#'/>",
                            "<p:b xmlns:p='u'/>",
                            "<p:b/>",
                            "&e;",
                            "<b",
                            "<",
                            ">",
                            "&",
                            "\"",
                            "=",
                            "<b =",
                            "<!",
                            "<!DOCTYPE a>"}) {
    all.push_back({std::string("within: ") + piece, within(piece)});
  }
  for (const char* piece : {"<?a?>", "<?xml-stylesheet b?>", "<!---->", " ", "\r\n"}) {
    all.push_back({std::string("before: ") + piece, much(piece) + open + close});
    all.push_back({std::string("behind: ") + piece, open + close + much(piece)});
  }
  for (const char* begin : {"<", "<a ", "<a b='", "<!--", "<?a ", "<![CDATA[", "<!DOCTYPE ", "&",
                            "&#", "<!DOCTYPE a PUBLIC '", "<!DOCTYPE a [", "<!DOCTYPE a [<!--"}) {
    for (const char* filling : {"x", "<!-- -->", "] '\""}) {
      all.push_back({std::string("endless: ") + begin + filling, open + begin + much(filling)});
    }
  }
  all.push_back({"attributes", "<" + root + much(" a#=''") + "/>"});
  all.push_back({"attributes of one name", "<" + root + much(" a=''") + "/>"});
  all.push_back(
      {"attributes with prefixes", "<" + root + " xmlns:p='u'" + much(" p:a#=''") + "/>"});
  all.push_back({"tags full of attributes", within("<b" + Repeated(" a#='>'", 900 * 9) + "/>")});
  all.push_back({"namespaces", "<" + root + much(" xmlns:p#='u'") + "/>"});
  all.push_back({"namespaces and many that look for them",
                 "<" + root + Repeated(" xmlns:p#='u'", length / 2) + ">" +
                     Repeated("<p0:a/>", length / 2) + close});
  all.push_back(
      {"allowed namespaces and many that look for them",
       "<" + root + Repeated(" xmlns:p#='u'", 180 * 13) + ">" + much("<p0:a p9:b=''/>") + close});
  all.push_back({"nested", much("<b>")});
  all.push_back({"nested and closed", much("<b>") + Repeated("</b>", length)});
  all.push_back({"nested namespaces", much("<b xmlns:p#='u'>")});
  all.push_back(
      {"nested far and wide", within(Repeated("<b>", 60 * 3) + Repeated("</b>", 60 * 4))});
  all.push_back({"long names", within("<" + std::string(40'000, 'n') + "#/>")});
  all.push_back({"a long instruction", open + "<?a " + std::string(length, '?') + "?>" + close});
  all.push_back({"a long comment", open + "<!--" + much("- ") + "-->" + close});
  all.push_back({"a long value", "<" + root + " a='" + much("&#65;") + "'/>"});
  all.push_back(
      {"attribute words", typed("<!ATTLIST " + root + " a (" + much("w#|") + "z) #IMPLIED>")});
  all.push_back({"attribute lists", typed(much("<!ATTLIST a b# CDATA ''>"))});
  all.push_back({"instructions in a type", typed(much("<?a?>"))});
  all.push_back({"entities", typed(much("<!ENTITY e# ''>"))});
  all.push_back({"notations", typed(much("<!NOTATION n# PUBLIC ''>"))});
  all.push_back({"elements", typed(much("<!ELEMENT e# ANY>"))});
  all.push_back({"a wide content model", typed("<!ELEMENT a (" + much("e#|") + "z)>")});
  all.push_back({"a deep content model", typed("<!ELEMENT a " + much("("))});
  all.push_back({"parameters", typed("<!ENTITY % p ''>" + much("%p;"))});
  return all;
}

}  // namespace ostrel
