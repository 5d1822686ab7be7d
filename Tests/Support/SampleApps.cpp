#include "Support/SampleApps.h"

#include "Support/PropertyLists.h"

#include <sys/stat.h>

namespace brimvale::testing {

namespace {

void makeBundlesWithNames(const TemporaryFolder &folder, const std::string &apps) {
    makeBundle(folder, apps + "Acme.app", {"com.example.acme", "Acme", "Acme (name)", "1.2", "120"});
    makeBundle(folder, apps + "Acme Pro.app", {"com.example.acme.pro", "Acme Pro", {}, {}, "7"});
    makeBundle(folder, apps + "Bundle.app", {{}, {}, "By its bundle name", {}, {}});
    makeBundle(folder, apps + "Empty names.app", {"", "", "", {}, {}});
    makeBundle(folder, apps + "Foo.app", {"com.example.foo", "Foo", {}, {}, {}});
    makeBundle(folder, apps + "écran.app", {"com.example.ecran", "Écran &amp; son", {}, {}, {}});
    makeBundle(folder, apps + "日本語.app");
    makeBundle(folder, apps + folder.possibleName("caf\xE9.app"));
    folder.writeFile(apps + "Numbers.app/Contents/Info.plist",
                     "<plist><dict><key>CFBundleDisplayName</key><integer>4</integer>"
                     "<key>CFBundleVersion</key><string>4</string></dict></plist>");
    folder.writeFile(apps + "Binary.app/Contents/Info.plist", binaryInfoPlist());
}

void makeBundlesOfOtherForms(const TemporaryFolder &folder, const std::string &apps) {
    folder.makeFolder(apps + "No dictionary.app/Contents");
    folder.writeFile(apps + "Broken.app/Contents/Info.plist", "<plist><dict><key>CFBundleName</key>");
    folder.makeFolder(apps + "Pipe.app/Contents");
    mkfifo(folder.path(apps + "Pipe.app/Contents/Info.plist").c_str(), 0600);
    folder.writeFile(apps + "Flat.app/Info.plist", infoPlist({"com.example.flat", {}, "Flat", {}, {}}));
    folder.writeFile(apps + "Wrapped.app/Wrapper/Phone.app/Info.plist",
                     infoPlist({"com.example.phone", "Phone", {}, {}, {}}));
    folder.makeLink(apps + "Wrapped.app/WrappedBundle", "Wrapper/Phone.app");
    makeBundle(folder, apps + "Store.app", {"com.example.store", "Store", {}, {}, {}});
    folder.makeFile(apps + "Store.app/Contents/_MASReceipt/receipt");
    makeBundle(folder, apps + "Outer.app");
    makeBundle(folder, apps + "Outer.app/Contents/Applications/Inner.app");
}

void makePlaces(const TemporaryFolder &folder, const std::string &apps) {
    makeBundle(folder, apps + "Utilities/Tool 10.app");
    makeBundle(folder, apps + "Utilities/Tool 2.app");
    makeBundle(folder, apps + "One/Two/Three/Deep.app");
    makeBundle(folder, apps + "One/Two/Three/Four/Too deep.app");
    makeBundle(folder, apps + ".hidden/Hidden.app");
    makeBundle(folder, apps + ".Dotted.app");
    folder.makeFolder(apps + "Invalid.app/Resources");
    folder.makeFile(apps + "File.app");
    folder.makeLink(apps + "Alias.app", "Foo.app");
    folder.makeLink(apps + "Dangling.app", "nowhere.app");
    folder.makeLink(apps + "One/loop", "../..");
    folder.makeLink(apps + "Another way", "Utilities");
}

} // namespace

std::string makeBundle(const TemporaryFolder &folder, const std::string &inside, const BundleInfo &info) {
    folder.writeFile(inside + "/Contents/Info.plist", infoPlist(info));
    folder.makeFile(inside + "/Contents/MacOS/program", 10'000);
    return folder.path(inside);
}

void makeSampleApps(const TemporaryFolder &folder, const std::string &home) {
    const std::string apps = home + (home.empty() ? "Applications/" : "/Applications/");
    makeBundlesWithNames(folder, apps);
    makeBundlesOfOtherForms(folder, apps);
    makePlaces(folder, apps);
}

} // namespace brimvale::testing
