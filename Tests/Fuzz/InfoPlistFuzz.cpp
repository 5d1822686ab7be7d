#include "Fuzz/FuzzTarget.h"
#include "Platform/InfoDictionary.h"
#include "Support/PropertyLists.h"

#include <cstdlib>

namespace brimvale::testing {

std::vector<std::string> fuzzSeeds() {
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
    return {infoPlist({"com.example.app", "Display", "Name", "1.2", "120"}), everything, binaryInfoPlist(),
            binary};
}

void fuzz(std::string_view input) {
    const BundleInfo info = parseInfoDictionary(input);
    if (info.name && info.name->size() > input.size() * 2)
        std::abort(); // more than can have come from there
}

} // namespace brimvale::testing
