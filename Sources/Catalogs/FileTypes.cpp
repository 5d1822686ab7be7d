#include "Catalogs/FileTypes.h"

#include <algorithm>

namespace brimvale {

namespace {

struct TypeRecord {
    FileTypeWords words;
    std::string_view extensions; ///< in lower case, of at most eight characters, with a space between them
};

constexpr std::array<TypeRecord, fileTypeCount> records{{
    {{"video", "Video"},
     "3g2 3gp asf avi divx f4v flv m1v m2ts m2v m4v mkv mod mov mp4 mpe mpeg mpg mts mxf ogm ogv qt rm rmvb "
     "vob webm wmv y4m braw r3d insv"},
    {{"picture", "Pictures"},
     "jpg jpeg jpe jp2 jxl png gif bmp tif tiff webp heic heif avif svg svgz ico icns psd psb xcf kra ora "
     "raw arw cr2 cr3 crw dng nef nrw orf pef raf rw2 srw x3f ai eps exr hdr tga dds pcx ppm pgm pbm pnm "
     "xpm xbm afphoto afdesign sketch clip procreate indd cdr lrprev"},
    {{"audio", "Audio"},
     "aac ac3 aif aiff alac amr ape au caf dff dsf dts flac m4a m4b m4p mid midi mka mp2 mp3 mpc oga ogg "
     "opus ra shn tta voc wav wave wma wv xm it s3m aup3 flp logicx sf2 sfz"},
    {{"document", "Documents"},
     "pdf doc docx docm dot dotx odt ott fodt rtf txt md rst tex bib xls xlsx xlsm xlsb ods ots csv tsv ppt "
     "pptx pptm pps ppsx odp otp odg vsd vsdx epub mobi azw azw3 fb2 djvu djv ps xps oxps pages numbers "
     "keynote one pub wpd wps chm cbz cbr ipynb drawio gnumeric abw tm lyx info"},
    {{"archive", "Archives"},
     "zip 7z rar tar gz tgz bz2 tbz tbz2 xz txz zst tzst lz lz4 lzma lzo lzh lha z arj cab cpio ar ace sit "
     "sitx br sz war ear xar zpaq zipx arc tlz borg"},
    {{"disk", "Disk Images"},
     "iso img dmg vmdk vdi vhd vhdx qcow qcow2 qed ova ovf vmem vmsn vmss vmwarevm hdd hds pvm toast cdr "
     "nrg mdf mds bin cue wim esd swm squashfs sqfs udf cso chd rvz wbfs nsp xci gcm utm avhdx"},
    {{"program", "Programs"},
     "exe msi msix appx dll sys ocx drv so dylib ko o a lib out elf com scr app deb rpm apk aab ipa "
     "flatpak snap appimage pkg mpkg run crx xpi jar aar class dex whl egg gem nupkg pyc pyo pyd node wasm "
     "pdb dsym kext nro vsix rlib rmeta rcgu hi nexe eopkg bundle pak asar uasset cmi cmo cmx"},
    {{"code", "Source Code"},
     "c h cc cpp cxx c++ hh hpp hxx h++ inl ipp m mm swift rs go java kt kts scala groovy gradle py pyi pyx "
     "rb pl pm php phtml js mjs cjs jsx ts tsx vue svelte html htm xhtml css scss sass less json json5 jsonl "
     "xml xsl xslt xsd yaml yml toml ini cfg conf sh bash zsh fish ps1 bat cmd lua r jl hs lhs ml mli ex exs "
     "erl hrl clj cljs lisp el scm vb cs fs fsx dart zig nim d pas pp ada adb ads f f77 f90 f95 for asm s "
     "sql "
     " proto thrift cmake mk mak am ac in m4 qml ui pro pri qrc patch diff vim tcl v sv vhdl map po "
     "pot graphql tf nix ebuild spec plist strings lock glsl hlsl metal cu cl gd tscn"},
    {{"database", "Databases"},
     "db db3 sqlite sqlite3 sqlitedb db-wal db-shm sdb mdb accdb dbf ldf ibd frm myd myi fdb gdb realm "
     "rdb aof ldb sst kdb kdbx odb dta sav rds rdata parquet feather arrow avro orc hdf5 h5 hdf nc npy npz "
     "mat lmdb mdbx pkl pickle dump wt couch fic gpkg shp mbtiles pbf osm las laz gguf ggml onnx pt "
     "pth ckpt tflite"},
    {{"mail", "Mail"}, "eml emlx mbox mbx msf msg pst ost olm dbx nsf vcf ics mab wdseml tnef mozeml"},
    {{"log", "Logs"},
     "log journal trace evtx etl dmp core crash har pcap pcapng ips hprof prof blf tracev3 err"},
    {{"font", "Fonts"}, "ttf otf ttc otc woff woff2 pfb pfm afm eot dfont pcf bdf psf fon t1 gf pk tfm vf"},
    {{"model", "3D & CAD"},
     "obj stl blend blend1 fbx dae 3ds max ma mb c4d ply gltf glb usd usda usdc usdz abc step stp iges igs "
     "dwg dxf dwf skp rvt rfa ifc f3d f3z sldprt sldasm slddrw ipt iam catpart 3mf gcode amf lwo x3d scad "
     "fcstd zpr ztl zbr vdb"},
    {{"other", "Other"}, ""},
}};

constexpr std::size_t longestExtension = 8;

constexpr char lowerCase(char one) {
    return one >= 'A' && one <= 'Z' ? static_cast<char>(one - 'A' + 'a') : one;
}

/// An extension as a number, in lower case; 0 if it is empty or too long.
constexpr std::uint64_t keyOf(std::string_view extension) {
    if (extension.size() > longestExtension)
        return 0;
    std::uint64_t key = 0;
    for (const char one : extension)
        key = (key << 8U) | static_cast<unsigned char>(lowerCase(one));
    return key;
}

/// A hash table of all extensions, made by the compiler. Where two types name the same extension, the first
/// one has it.
class ExtensionTable {
public:
    constexpr ExtensionTable() {
        for (std::size_t type = 0; type < records.size(); ++type) {
            std::string_view rest = records[type].extensions;
            while (!rest.empty()) {
                const std::size_t length = std::min(rest.find(' '), rest.size());
                insert(keyOf(rest.substr(0, length)), static_cast<FileType>(type));
                rest.remove_prefix(std::min(length + 1, rest.size()));
            }
        }
    }

    [[nodiscard]] constexpr FileType find(std::uint64_t key) const {
        std::size_t slot = slotOf(key);
        while (keys_[slot] != key && keys_[slot] != 0)
            slot = (slot + 1) % size;
        return types_[slot];
    }

private:
    static constexpr std::size_t size = 2048;
    static constexpr unsigned unusedBits = 64 - 11;

    static constexpr std::size_t slotOf(std::uint64_t key) {
        return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15U) >> unusedBits);
    }

    constexpr void insert(std::uint64_t key, FileType type) {
        std::size_t slot = slotOf(key);
        while (keys_[slot] != key && keys_[slot] != 0)
            slot = (slot + 1) % size;
        if (keys_[slot] == key)
            return;
        keys_[slot] = key;
        types_[slot] = type;
    }

    std::array<std::uint64_t, size> keys_{};
    std::array<FileType, size> types_ = filled();

    static constexpr std::array<FileType, size> filled() {
        std::array<FileType, size> types{};
        types.fill(FileType::other);
        return types;
    }
};

constexpr ExtensionTable table;

constexpr bool isNumber(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char one) { return one >= '0' && one <= '9'; });
}

} // namespace

const FileTypeWords &wordsOf(FileType type) {
    return records[static_cast<std::size_t>(type)].words;
}

std::optional<FileType> fileTypeWithKey(std::string_view key) {
    if (key.size() > 1 && lowerCase(key.back()) == 's')
        key.remove_suffix(1);
    for (std::size_t type = 0; type < records.size(); ++type) {
        const std::string_view one = records[type].words.key;
        if (std::equal(one.begin(), one.end(), key.begin(), key.end(),
                       [](char wanted, char given) { return wanted == lowerCase(given); }))
            return static_cast<FileType>(type);
    }
    return std::nullopt;
}

FileType fileTypeOf(std::string_view name) noexcept {
    while (true) {
        const std::size_t dot = name.rfind('.');
        if (dot == std::string_view::npos || dot == 0)
            return FileType::other;
        const std::string_view extension = name.substr(dot + 1);
        if (!isNumber(extension)) {
            const std::uint64_t key = keyOf(extension);
            return key == 0 ? FileType::other : table.find(key);
        }
        name = name.substr(0, dot);
    }
}

} // namespace brimvale
