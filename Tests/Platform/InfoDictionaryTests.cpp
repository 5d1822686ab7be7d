#include "Platform/InfoDictionary.h"

#include "Support/PropertyLists.h"
#include "Support/RandomInputs.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace brimvale {

namespace {

using namespace testing;

std::string repeated(std::string_view text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

std::string nameIn(const std::string &plist) {
    return parseInfoDictionary(plist).name.value_or("(none)");
}

const std::string named = "<key>CFBundleName</key><string>Named</string>";

std::string dictionary(const std::string &content) {
    return "<plist><dict>" + content + "</dict></plist>";
}

/// A dictionary with a name, and something else under another key.
std::string binaryWith(std::vector<std::string> others) {
    std::vector<std::string> objects = {dictionaryObject({1, 2, 3, 4}), asciiObject("CFBundleName"),
                                        asciiObject("Other"), asciiObject("Named")};
    objects.insert(objects.end(), others.begin(), others.end());
    return binaryPropertyList(objects);
}

} // namespace

TEST(InfoDictionary, ReadsXmlAndBinary) {
    const BundleInfo info{"com.example.app", "Display", "Näme", "1.2", "120"};
    EXPECT_EQ(parseInfoDictionary(infoPlist(info)), info);
    EXPECT_EQ(parseInfoDictionary("\xEF\xBB\xBF" + infoPlist(info)), info);
    EXPECT_EQ(parseInfoDictionary(binaryInfoPlist()),
              (BundleInfo{"com.example.binary", "Binäry ☃", {}, "3.0", {}}));
    EXPECT_EQ(nameIn(dictionary(named)), "Named");
    EXPECT_EQ(nameIn(dictionary("<!-- <array> -->" + named)), "Named");
    EXPECT_EQ(nameIn(dictionary("<key>CFBundleName</key><string>A &amp; <![CDATA[<B>]]></string>")),
              "A & <B>");
    EXPECT_EQ(nameIn(binaryWith({asciiObject("value")})), "Named");
}

TEST(InfoDictionary, BrokenFileGivesEmptyInfo) {
    for (const std::string &broken : {
             std::string(),
             std::string("<"),
             std::string("nonsense"),
             std::string("bplist00"),
             std::string(100, '\0'),
             "<plist><array>" + named + "</array></plist>",
             std::string("<plist><string>Named</string></plist>"),
             "<plist><dict>" + named,
             dictionary("<key>CFBundleName</key><integer>1</integer>"),
             dictionary("<key>CFBundleName</key>"),
             dictionary("<key>CFBundleName</key><string>&broken;</string>"),
             binaryPropertyList({asciiObject("Named")}),
             binaryPropertyList(
                 {dictionaryObject({1, 2}), asciiObject("CFBundleName"), utf16Object({u"Na\0med", 6})}),
             binaryPropertyList({}),
             binaryWith({}),
         })
        EXPECT_EQ(parseInfoDictionary(broken), BundleInfo{}) << broken;

    const std::string whole = binaryInfoPlist();
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(parseInfoDictionary(whole.substr(0, length)), BundleInfo{}) << length;
}

TEST(InfoDictionary, AcceptsLargeDictionaries) {
    EXPECT_EQ(nameIn(dictionary("<key>Types</key><array>" + repeated("<dict/>", 9'000) + "</array>" + named)),
              "Named");
    EXPECT_EQ(
        nameIn(dictionary("<key>Deep</key>" + repeated("<array>", 60) + repeated("</array>", 60) + named)),
        "Named");
    std::vector<std::uint16_t> references(5000, 5);
    EXPECT_EQ(nameIn(binaryWith({arrayObject(references), asciiObject("the same text")})), "Named");
}

TEST(InfoDictionary, RefusesDeepCyclicAndHugeInput) {
    // Nested so deeply that recursion would end the program, with closing tags that do not close.
    const int deep = 60'000;
    EXPECT_EQ(nameIn(dictionary(named + "<key>x</key>" + repeated("<array>", deep))), "(none)");
    EXPECT_EQ(nameIn(dictionary(named + "<key>x</key>" + repeated("<array><!--</array>-->", deep / 3) +
                                repeated("</array>", deep / 3))),
              "(none)");
    EXPECT_EQ(nameIn(repeated("<plist>", deep) + dictionary(named)), "(none)");
    EXPECT_EQ(
        nameIn(dictionary("<key>CFBundleName</key><string>" + repeated("&amp;", 100'000) + "</string>")),
        "(none)");
    EXPECT_EQ(nameIn(dictionary(named + std::string(600'000, ' '))), "(none)");

    // Objects that hold themselves, each other, or each a dozen of the next.
    EXPECT_EQ(nameIn(binaryWith({arrayObject({4})})), "(none)");
    EXPECT_EQ(nameIn(binaryWith({arrayObject({5}), dictionaryObject({1, 4})})), "(none)");
    std::vector<std::string> dozens;
    for (std::uint16_t i = 0; i < 20; ++i)
        dozens.push_back(arrayObject(std::vector<std::uint16_t>(12, static_cast<std::uint16_t>(i + 5))));
    EXPECT_EQ(nameIn(binaryWith(dozens)), "(none)");
    std::vector<std::string> chain;
    for (std::uint16_t i = 0; i < 20'000; ++i)
        chain.push_back(arrayObject({static_cast<std::uint16_t>(i + 5)}));
    EXPECT_EQ(nameIn(binaryWith(chain)), "(none)");
    // A long text, many times.
    EXPECT_EQ(nameIn(binaryWith({arrayObject(std::vector<std::uint16_t>(1000, 5)),
                                 asciiObject(std::string(300'000, 'x'))})),
              "(none)");
}

TEST(InfoDictionary, TakesRandomInput) {
    const std::string everything =
        "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ELEMENT x>]><plist version=\"1.0\"><dict>"
        "<key>CFBundleName</key><string>A &amp;&#xE9;&lt;<![CDATA[<b>]]></string><!-- <dict> -->"
        "<key>Numbers</key><array><integer>-1</integer><integer>0xFF</integer><real>1.5</real><true/><false/>"
        "<date>2026-03-01T09:30:00Z</date><data>AAEC/w==</data><string/><array/><dict/></array>"
        "<key>CFBundleVersion</key><dict><key>a</key><key>b</key></dict></dict></plist>";
    const std::string binary = binaryPropertyList(
        {dictionaryObject({1, 2, 3, 4}), asciiObject("CFBundleName"), asciiObject("Other"),
         utf16Object(u"\xD83D\xDE00 text"), arrayObject({5, 6, 7, 8, 9, 10, 3}), "\x08\x09",
         "\x13" + std::string(8, '\x7F'), "\x23\x41\x42\x43\x44\x45\x46\x47\x48",
         "\x33\x41\x42\x43\x44\x45\x46\x47\x48", "\x43\x01\x02\x03", "\x80\x01"});
    RandomInputs inputs({infoPlist({"com.example.app", "Display", "Name", "1.2", "120"}), everything,
                         binaryInfoPlist(), binary});
    for (int i = 0; i < 2000; ++i) {
        const std::string input = inputs.next();
        EXPECT_LE(parseInfoDictionary(input).name.value_or("").size(), input.size() * 2)
            << "more than can have come from there";
    }
}

TEST(InfoDictionary, FindsInfoPlistInEveryBundleLayout) {
    const TemporaryFolder folder;
    const auto nameOf = [&](const char *bundle) -> std::string {
        const auto info = bundleInfo(FileURL(folder.path(bundle)));
        return info ? info->name.value_or("(none)") : "no bundle";
    };
    const auto write = [&](const std::string &inside, const std::string &name) {
        folder.writeFile(inside, infoPlist({{}, {}, name, {}, {}}));
    };
    write("deep.app/Contents/Info.plist", "deep");
    write("deep.app/Info.plist", "not this");
    write("flat.app/Info.plist", "flat");
    write("wrapped.app/Wrapper/Phone.app/Info.plist", "wrapped");
    folder.makeLink("wrapped.app/WrappedBundle", "Wrapper/Phone.app");
    folder.makeFolder("bare.app/Contents/Info.plist");
    folder.makeFolder("none.app/Resources");
    write("large.app/Contents/Info.plist", std::string(600'000, 'x'));
    folder.makeFile("file.app", 10);
    EXPECT_EQ(nameOf("deep.app"), "deep");
    EXPECT_EQ(nameOf("flat.app"), "flat");
    EXPECT_EQ(nameOf("wrapped.app"), "wrapped");
    EXPECT_EQ(nameOf("bare.app"), "(none)") << "a folder in the dictionary's place";
    EXPECT_EQ(nameOf("large.app"), "(none)");
    for (const char *bundle : {"none.app", "file.app", "missing.app"})
        EXPECT_EQ(nameOf(bundle), "no bundle");
}

} // namespace brimvale
