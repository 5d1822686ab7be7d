#include "Catalogs/Linux/CleanupRecords.h"

#include "Platform/Folder.h"

namespace brimvale::linuxCatalog {

namespace {

const std::vector<std::string> hubFolders = {"$HF_HUB_CACHE", "$HF_HOME/hub", "~/.cache/huggingface/hub"};

/// "models--maker--name" is the folder of "maker/name". The files inside are shared, so it is one entry.
void findHubModels(CleanupSearch &search) {
    for (const std::string &folder : search.find(hubFolders)) {
        const auto rule = std::make_shared<const CleanupRule>(
            CleanupRule{.folder = folder, .takes = {"models--*", "datasets--*", "spaces--*"}});
        for (const std::string &entry : namesIn(folder).value_or(std::vector<std::string>())) {
            if (!allowsName(*rule, entry))
                continue;
            std::string name = entry.substr(entry.find("--") + 2);
            if (const std::size_t between = name.find("--"); between != std::string::npos)
                name.replace(between, 2, 1, '/');
            search.add(joinPath(folder, entry), {.name = name, .rule = rule});
        }
    }
}

} // namespace

CleanupRecord packageCaches() {
    return {
        .target = {.id = "package-caches",
                   .title = "Package downloads",
                   .detail =
                       "Downloads of pip, npm, Cargo, Go and others. They are downloaded again when needed.",
                   .risk = CleanupRisk::safe,
                   .roots = {},
                   .symbol = "package"},
        .places =
            {
                {.places = {"$PIP_CACHE_DIR",
                            "$CACHE/pip",
                            "$YARN_CACHE_FOLDER",
                            "$CACHE/yarn",
                            "/usr/local/share/.cache/yarn",
                            "~/.yarn/berry/cache",
                            "$CACHE/pnpm",
                            "$BUN_INSTALL_CACHE_DIR",
                            "~/.bun/install/cache",
                            "$CACHE/node-gyp",
                            "$GOMODCACHE/cache/download",
                            "$GOPATH/pkg/mod/cache/download",
                            "~/go/pkg/mod/cache/download",
                            "$COMPOSER_CACHE_DIR",
                            "$CACHE/composer",
                            "$NUGET_HTTP_CACHE_PATH",
                            "$DATA/NuGet/http-cache",
                            "$DATA/NuGet/v3-cache",
                            "$DATA/NuGet/plugins-cache",
                            "$HOMEBREW_CACHE",
                            "$CACHE/Homebrew",
                            "$CACHE/yay",
                            "$CACHE/paru/clone",
                            "$CACHE/coursier",
                            "~/.ivy2/cache"}},
                {.places = {"$UV_CACHE_DIR", "$CACHE/uv"},
                 .leaves = {".lock", ".gitignore", "CACHEDIR.TAG"},
                 .app = "uv",
                 .program = {.name = "uv", .processes = {"uv", "uvx"}},
                 .freesLess = true},
                // Beside these are working environments.
                {.places = {"$POETRY_CACHE_DIR", "$CACHE/pypoetry"},
                 .takes = {"cache", "artifacts"},
                 .app = "Poetry"},
                // Its database names each of its folders, so they only go together.
                {.places = {"$PRE_COMMIT_HOME", "$CACHE/pre-commit"}, .itself = true},
                {.places = {"$npm_config_cache", "~/.npm"},
                 .takes = {"_cacache", "_npx", "_logs"},
                 .app = "npm"},
                // What scripts have stored and the lines typed are the user's.
                {.places = {"$DENO_DIR", "$CACHE/deno"},
                 .leaves = {"location_data", "deno_history.txt"},
                 .app = "Deno"},
                {.places = {"$CARGO_HOME/registry/cache", "~/.cargo/registry/cache",
                            "$CARGO_HOME/registry/src", "~/.cargo/registry/src", "$CARGO_HOME/git/checkouts",
                            "~/.cargo/git/checkouts", "$CARGO_HOME/git/db", "~/.cargo/git/db"},
                 .app = "Cargo",
                 .program = {.name = "Cargo", .processes = {"cargo", "rustc"}}},
                {.places = {"$GRADLE_USER_HOME/caches", "~/.gradle/caches", "$GRADLE_USER_HOME/wrapper/dists",
                            "~/.gradle/wrapper/dists", "$GRADLE_USER_HOME/daemon", "~/.gradle/daemon"},
                 .app = "Gradle",
                 .program = {.name = "Gradle", .processes = {"gradle", "GradleDaemon"}}},
                // Beside these are programs that the user has activated.
                {.places = {"$PUB_CACHE", "~/.pub-cache"},
                 .takes = {"hosted", "hosted-hashes", "git", "_temp", "log"},
                 .app = "Dart"},
            },
        .commands = {{"uv cache prune", {"$UV_CACHE_DIR", "$CACHE/uv"}}}};
}

CleanupRecord buildCaches() {
    return {
        .target =
            {.id = "build-caches",
             .title = "Build caches",
             .detail =
                 "Compiled files kept to make builds faster. Only the next build takes longer without them.",
             .risk = CleanupRisk::safe,
             .roots = {},
             .symbol = "hammer"},
        .places =
            {
                {.places = {"$CCACHE_DIR", "~/.ccache", "$CACHE/ccache"},
                 .leaves = {"ccache.conf"},
                 .app = "ccache"},
                {.places = {"$CACHE/bazel", "$CACHE/bazelisk"},
                 .program = {.name = "Bazel", .processes = {"bazel", "bazelisk"}}},
                // Hundreds of folders with numbers for names are one entry.
                {.places = {"$SCCACHE_DIR", "$CACHE/sccache", "$GOCACHE", "$CACHE/go-build", "$CACHE/zig",
                            "$CACHE/clangd", "$CACHE/vscode-cpptools", "$CACHE/mesa_shader_cache",
                            "$CACHE/mesa_shader_cache_db", "$CACHE/nvidia", "~/.nv/ComputeCache"},
                 .itself = true},
            },
        .commands = {{"ccache -C", {"$CCACHE_DIR", "~/.ccache", "$CACHE/ccache"}},
                     {"go clean -cache", {"$GOCACHE", "$CACHE/go-build"}},
                     {"bazel clean --expunge", {"$CACHE/bazel"}}}};
}

CleanupRecord packageStores() {
    return {
        .target = {.id = "package-stores",
                   .title = "Package stores",
                   .detail = "Libraries that your projects use directly. Installing again downloads them, "
                             "but not what you published locally.",
                   .risk = CleanupRisk::review,
                   .roots = {},
                   .symbol = "warehouse"},
        .places =
            {
                {.places = {"~/.m2/repository", "$NUGET_PACKAGES", "~/.nuget/packages"}},
                {.places = {"$GOMODCACHE", "$GOPATH/pkg/mod", "~/go/pkg/mod"}, .leaves = {"cache"}},
                {.places = {"$PNPM_HOME/store", "$DATA/pnpm/store", "$CONDA_PKGS_DIRS", "~/miniconda3/pkgs",
                            "~/miniforge3/pkgs", "~/mambaforge/pkgs", "~/anaconda3/pkgs", "~/.conda/pkgs"},
                 .freesLess = true},
            },
        .commands = {{"pnpm store prune", {"$PNPM_HOME/store", "$DATA/pnpm/store"}},
                     {"conda clean --all",
                      {"$CONDA_PKGS_DIRS", "~/miniconda3/pkgs", "~/miniforge3/pkgs", "~/mambaforge/pkgs",
                       "~/anaconda3/pkgs", "~/.conda/pkgs"}},
                     {"go clean -modcache", {"$GOMODCACHE", "$GOPATH/pkg/mod", "~/go/pkg/mod"}},
                     {"dotnet nuget locals all --clear", {"$NUGET_PACKAGES", "~/.nuget/packages"}}}};
}

CleanupRecord headlessBrowsers() {
    return {
        .target = {.id = "headless-browsers",
                   .title = "Browsers for tests",
                   .detail =
                       "Whole browsers that Playwright, Puppeteer, Cypress and Electron builds downloaded. "
                       "They download them again.",
                   .risk = CleanupRisk::safe,
                   .roots = {},
                   .symbol = "bot"},
        .places = {{.places = {"$PLAYWRIGHT_BROWSERS_PATH", "$CACHE/ms-playwright", "$CACHE/ms-playwright-go",
                               "$PUPPETEER_CACHE_DIR", "~/.cache/puppeteer", "$CYPRESS_CACHE_FOLDER",
                               "$CACHE/Cypress", "$electron_config_cache", "$CACHE/electron",
                               "$ELECTRON_BUILDER_CACHE", "$CACHE/electron-builder", "$CACHE/selenium"},
                    .leaves = {".links"}}}};
}

CleanupRecord androidEmulators() {
    return {
        .target = {.id = "android",
                   .title = "Android emulators",
                   .detail =
                       "Virtual phones and their system images, gigabytes each. Android Studio sets them up "
                       "again.",
                   .risk = CleanupRisk::review,
                   .roots = {},
                   .symbol = "smartphone"},
        .places = {{.places = {"$ANDROID_HOME/system-images/*/*", "$ANDROID_SDK_ROOT/system-images/*/*",
                               "~/Android/Sdk/system-images/*/*", "$ANDROID_HOME/ndk",
                               "$ANDROID_SDK_ROOT/ndk", "~/Android/Sdk/ndk", "$ANDROID_HOME/sources",
                               "$ANDROID_SDK_ROOT/sources", "~/Android/Sdk/sources", "~/.android/cache",
                               "~/.android/build-cache"}}},
        .find = findAndroidDevices,
        .alsoLooksIn = {"$ANDROID_AVD_HOME", "$ANDROID_EMULATOR_HOME/avd", "$ANDROID_USER_HOME/avd",
                        "~/.android/avd"},
        .commands = {
            {"avdmanager delete avd -n NAME",
             {"$ANDROID_AVD_HOME", "$ANDROID_EMULATOR_HOME/avd", "$ANDROID_USER_HOME/avd", "~/.android/avd"}},
            {"sdkmanager --uninstall PACKAGE", {"$ANDROID_HOME", "$ANDROID_SDK_ROOT", "~/Android/Sdk"}}}};
}

CleanupRecord languageModels() {
    return {
        .target = {.id = "ai-models",
                   .title = "AI models",
                   .detail = "Downloaded models of several gigabytes each. They download again; your own "
                             "fine-tuned ones do not.",
                   .risk = CleanupRisk::review,
                   .roots = {},
                   .symbol = "brain"},
        .places =
            {
                // Models share these files.
                {.places = {"$OLLAMA_MODELS", "~/.ollama/models", "/usr/share/ollama/.ollama/models"},
                 .itself = true,
                 .keptBecause = "Models share files there. Remove a model with Ollama.",
                 .command = "ollama rm NAME"},
                {.places = {"~/.lmstudio/models", "~/.cache/lm-studio/models", "$TORCH_HOME", "$CACHE/torch",
                            "$CACHE/whisper", "~/jan/models"}},
                {.places = {"~/.local/share/nomic.ai/GPT4All", "~/.cache/llama.cpp"}, .takes = {"*.gguf"}},
            },
        .find = findHubModels,
        .alsoLooksIn = hubFolders};
}

} // namespace brimvale::linuxCatalog
