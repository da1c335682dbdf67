#include "samples/HomeContents.h"

namespace tidewright::HomeContents {

namespace {

constexpr Int64 operator""_MB(unsigned long long count) {
    return static_cast<Int64>(count) * megabyte;
}
constexpr Int64 operator""_GB(long double count) {
    return static_cast<Int64>(count * static_cast<long double>(gigabyte) + 0.5L);
}

// A scan shows most things from 1 MB on, and some only from a greater size.
constexpr Int64 seen = 1'100'000;
constexpr Int64 seenDownload = 11'000'000;
constexpr Int64 seenUpdater = 21'000'000;
constexpr Int64 seenBuildOutput = 21'000'000;
constexpr Int64 seenAppCache = 51'000'000;
constexpr Int64 seenPackages = 51'000'000;
constexpr Int64 seenSimulatorData = 301'000'000;
constexpr Int64 seenLargeFile = 1'000'100'000;

constexpr SizedFile files[] = {
    // The Android SDK: of each kind some that a project names, some that nobody does.
    {"Library/Android/sdk/ndk/23.1.7779620/toolchains/llvm/bin/clang", 2.4_GB, 790, seen},
    {"Library/Android/sdk/ndk/25.1.8937393/toolchains/llvm/bin/clang", 2.6_GB, 510, seen},
    {"Library/Android/sdk/ndk/26.1.10909125/toolchains/llvm/bin/clang", 2.7_GB, 160, seen},
    {"Library/Android/sdk/ndk/27.2.12479018/toolchains/llvm/bin/clang", 2.9_GB, 45, seen},
    {"Library/Android/sdk/ndk-bundle/toolchains/llvm/bin/clang", 1.9_GB, 1100, seen},
    {"Library/Android/sdk/build-tools/30.0.3/aapt2", 150_MB, 1050, seen},
    {"Library/Android/sdk/build-tools/33.0.0/aapt2", 160_MB, 790, seen},
    {"Library/Android/sdk/build-tools/34.0.0/aapt2", 170_MB, 330, seen},
    {"Library/Android/sdk/build-tools/35.0.0/aapt2", 180_MB, 45, seen},
    {"Library/Android/sdk/build-tools/36.0.0-rc1/aapt2", 180_MB, 70, seen},
    {"Library/Android/sdk/cmake/3.10.2.4988404/bin/cmake", 60_MB, 1200, seen},
    {"Library/Android/sdk/cmake/3.18.1/bin/cmake", 70_MB, 900, seen},
    {"Library/Android/sdk/cmake/3.22.1/bin/cmake", 80_MB, 510, seen},
    {"Library/Android/sdk/cmake/3.30.5/bin/cmake", 90_MB, 45, seen},
    {"Library/Android/sdk/cmake/3.31.1/bin/cmake", 90_MB, 20, seen},
    {"Library/Android/sdk/system-images/android-29/google_apis/arm64-v8a/system.img", 3.1_GB, 980,
     seen},
    {"Library/Android/sdk/system-images/android-33/google_apis/arm64-v8a/system.img", 4.4_GB, 420,
     seen},
    {"Library/Android/sdk/system-images/android-35/google_apis_playstore/arm64-v8a/system.img",
     6.1_GB, 45, seen},
    {"Library/Android/sdk/platforms/android-33/android.jar", 130_MB, 790},
    {"Library/Android/sdk/platforms/android-35/android.jar", 140_MB, 45},
    {"Library/Android/sdk/platform-tools/adb", 15_MB, 30},
    {"Library/Android/sdk/emulator/lib64/libqt6.dylib", 1.1_GB, 30},

    // Emulators.
    {".android/avd/Pixel_8.avd/userdata-qemu.img.qcow2", 6.8_GB, 1, seen},
    {".android/avd/Pixel_8.avd/snapshots/default_boot/ram.bin", 2.2_GB, 1, seen},
    {".android/avd/Pixel_5.avd/userdata-qemu.img.qcow2", 4.1_GB, 95, seen},
    {".android/avd/Pixel_5.avd/snapshots/default_boot/ram.bin", 1.9_GB, 95, seen},

    // Gradle.
    {".gradle/caches/7.5.1/transforms/hermes.aar", 1.2_GB, 214, seen},
    {".gradle/caches/8.5/transforms/appcompat.aar", 1.4_GB, 240, seen},
    {".gradle/caches/8.7/transforms/geolocator.aar", 1.1_GB, 20, seen},
    {".gradle/caches/8.9/transforms/glance.aar", 900_MB, 5, seen},
    {".gradle/caches/8.10.2/transforms/hermes.aar", 1.8_GB, 2, seen},
    {".gradle/caches/modules-2/files-2.1/com.facebook.react/react-android.aar", 6.5_GB, 2},
    {".gradle/caches/jars-9/classes.jar", 220_MB, 2},
    {".gradle/wrapper/dists/gradle-7.5.1-all/d2mc/gradle-7.5.1-all.zip", 420_MB, 700, seen},
    {".gradle/wrapper/dists/gradle-8.5-bin/5t9h/gradle-8.5-bin.zip", 380_MB, 400, seen},
    {".gradle/wrapper/dists/gradle-8.7-all/aant/gradle-8.7-all.zip", 430_MB, 210, seen},
    {".gradle/wrapper/dists/gradle-8.9-bin/90cn/gradle-8.9-bin.zip", 390_MB, 130, seen},
    {".gradle/wrapper/dists/gradle-8.10.2-all/1uzh/gradle-8.10.2-all.zip", 450_MB, 100, seen},
    {".gradle/wrapper/dists/gradle-8.14-rc-1-bin/c3kl/gradle-8.14-rc-1-bin.zip", 390_MB, 60, seen},
    {".gradle/daemon/8.10.2/daemon-41873.out.log", 340_MB, 2, seen},
    {".kotlin/daemon/kotlin-daemon.log", 120_MB, 2},

    // Android Studio: the installed version, and one from before.
    {"Library/Caches/Google/AndroidStudio2024.2/index/shared_indexes", 2.9_GB, 2, seen},
    {"Library/Caches/Google/AndroidStudio2023.1/index/shared_indexes", 2.2_GB, 400, seen},
    {"Library/Application Support/Google/AndroidStudio2024.2/plugins/dart.jar", 480_MB, 2, seen},
    {"Library/Application Support/Google/AndroidStudio2023.1/plugins/dart.jar", 610_MB, 400, seen},
    {"Library/Logs/Google/AndroidStudio2024.2/idea.log", 60_MB, 2, seen},
    {"Library/Logs/Google/AndroidStudio2023.1/idea.log", 90_MB, 400, seen},
    {"java_error_in_studio_40211.hprof", 2.1_GB, 77, seen},

    // Xcode.
    {"Library/Developer/Xcode/DerivedData/Sundial-fgqzxkhvmnrtyubwaplcdeos/Index.noindex/records",
     3.8_GB, 41, seen},
    {"Library/Developer/Xcode/DerivedData/Harbour-bxqwmzrkltyvnsuhgocpaedf/Build/Harbour.app",
     9.6_GB, 2, seen},
    {"Library/Developer/Xcode/DerivedData/Lighthouse-cnvyqkxtzpwarmshguoldebf/Build/Lighthouse.app",
     5.2_GB, 214, seen},
    {"Library/Developer/Xcode/DerivedData/ModuleCache.noindex/UIKit.pcm", 1.7_GB, 2, seen},
    {"Library/Developer/Xcode/iOS DeviceSupport/iPhone12,1 16.7.10 (20H350)/Symbols/dyld_cache",
     4.6_GB, 420, seen},
    {"Library/Developer/Xcode/iOS DeviceSupport/iPhone15,2 17.6.1 (21G93)/Symbols/dyld_cache",
     5.1_GB, 190, seen},
    {"Library/Developer/Xcode/iOS DeviceSupport/iPhone15,2 18.1.1 (22B91)/Symbols/dyld_cache",
     5.3_GB, 80, seen},
    {"Library/Developer/Xcode/iOS DeviceSupport/iPhone15,2 18.2 (22C152)/Symbols/dyld_cache",
     5.4_GB, 12, seen},
    {"Library/Developer/Xcode/watchOS DeviceSupport/Watch6,2 11.2 (22S101)/Symbols/dyld_cache",
     1.9_GB, 12, seen},
    {"Library/Developer/Xcode/Archives/{date}/Sundial {date}.xcarchive/dSYMs/Sundial", 640_MB, 300,
     seen},
    {"Library/Developer/Xcode/Archives/{date}/Harbour {date}.xcarchive/dSYMs/Harbour", 1.1_GB, 33,
     seen},
    {"Library/Developer/Xcode/UserData/Previews/Simulator Devices/5A1E-preview/data/cache.db",
     1.3_GB, 44, seen},
    {"Library/Developer/CoreSimulator/Caches/dyld/22C65/dyld_sim_shared_cache_arm64", 3.4_GB, 12,
     seen},
    {"Library/Caches/com.apple.dt.Xcode/Downloads/Documentation.idx", 1.5_GB, 12, seen},
    {"Library/Caches/CocoaPods/Pods/Release/hermes-engine/hermes.xcframework", 2.3_GB, 33, seen},
    {"Library/Caches/ReactNative/hermes-ios-0.76.5.tar.gz", 720_MB, 33, seen},

    // JavaScript.
    {".npm/_cacache/content-v2/sha512/1f/88/c2", 3.4_GB, 1, seen},
    {".npm/_npx/9f2c41/node_modules/create-expo-app/build.js", 480_MB, 26, seen},
    {".yarn/berry/cache/react-native-npm-0.76.5.zip", 2.2_GB, 2, seen},
    {"Library/Caches/Yarn/v6/npm-react-native-0.71.14/package.tgz", 1.6_GB, 214, seen},
    {"Library/pnpm/store/v3/files/04/typescript", 60_MB, 64},
    {"Library/pnpm/store/v3/files/7b/vite", 28_MB, 64},
    {"Library/pnpm/store/v3/files/a9/webpack-of-last-year", 900_MB, 310, seen},
    {".bun/install/cache/elysia@1.1.26/elysia.js", 540_MB, 88, seen},
    {".expo/expo-go/Exponent-2.32.15.tar.gz", 350_MB, 9, seen},
    {".expo/ios-simulator-app-cache/Exponent-2.32.15.app/Exponent", 410_MB, 9, seen},
    {"Library/Caches/node-gyp/22.11.0/include/node/v8.h", 70_MB, 50, seen},
    {"Library/Caches/dotslash/5e/0c2f/react-native-devtools/DevTools", 310_MB, 14, seen},
    {".tmp/metro-cache/7e/transformed.json", 1.2_GB, 2, seen},
    {".tmp/haste-map-a41c9f-0b7d/haste.map", 140_MB, 2},
    {".nvm/versions/node/v16.20.2/lib/node.a", 140_MB, 800, seen},
    {".nvm/versions/node/v18.19.0/lib/node.a", 170_MB, 600, seen},
    {".nvm/versions/node/v20.18.1/lib/node.a", 180_MB, 120, seen},
    {".nvm/versions/node/v22.11.0/lib/node.a", 190_MB, 50, seen},
    {".local/share/fnm/node-versions/v16.14.2/installation/lib/node.a", 140_MB, 900, seen},
    {".local/share/fnm/node-versions/v18.17.0/installation/lib/node.a", 170_MB, 500, seen},
    {".local/share/fnm/node-versions/v20.11.0/installation/lib/node.a", 180_MB, 300, seen},

    // What clutters every machine.
    {"Library/Caches/Homebrew/downloads/llvm--19.1.5.bottle.tar.gz", 2.6_GB, 21, seen},
    {"Library/Caches/Homebrew/downloads/openjdk--23.0.1.bottle.tar.gz", 420_MB, 110},
    {"Library/Caches/com.microsoft.VSCode.ShipIt/update.a8Qx/Code.zip", 520_MB, 16, seen},
    {"Library/Application Support/Code/CachedData/f1a4fb10/main.code", 340_MB, 1, seen},
    {"Library/Application Support/Code/CachedExtensionVSIXs/ms-python.vsix", 410_MB, 30},
    {"Library/Application Support/Code/logs/main.log", 40_MB, 1},
    {"Library/Application Support/Code/User/settings.json", 1_MB, 30},
    {"Library/Caches/Google/Chrome/Default/Cache/data_3", 1.4_GB, 0, seen},
    {"Library/Caches/BraveSoftware/Brave-Browser/Default/Cache/data_3", 620_MB, 4, seen},
    {"Library/Caches/Firefox/Profiles/k3v9.default-release/cache2/index", 780_MB, 2, seen},
    {"Library/Caches/com.apple.Safari/WebKitCache/blob", 260_MB, 2},
    {"Library/Caches/com.tinyspeck.slackmacgap/Cache/data_3", 2.2_GB, 1, seenAppCache},
    {"Library/Caches/com.tinyspeck.slackmacgap.ShipIt/update.Zr31/Slack.zip", 460_MB, 19,
     seenUpdater},
    {"Library/Caches/com.figma.Desktop/Cache/data_3", 900_MB, 7},
    {"Library/Logs/DiagnosticReports/Harbour.ips", 30_MB, 8},
    {"Library/Logs/CoreSimulator/CoreSimulator.log", 380_MB, 1, seen},
    {".Trash/harbour-before-rebase/index.pack", 1.9_GB, 13, seen},
    {".Trash/Screen Recording {date} at 16.02.11.mov", 2.8_GB, 27, seen},
    {"Downloads/Docker-4.36.0.dmg", 540_MB, 120, seenDownload},
    {"Downloads/Xcode_15.4.xip", 3.3_GB, 210, seenDownload},
    {"Downloads/android-studio-2023.1.1.zip", 1.2_GB, 400, seenDownload},
    {"Downloads/invoice-march.pdf", 2_MB, 240},
    {"Downloads/Figma-124.7.dmg", 190_MB, 3},
    {"Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw", 18.4_GB, 3, seen},

    // What no rule may touch.
    {"Documents/Contracts/lighthouse.pdf", 12_MB, 500},
    {"Pictures/Photos Library.photoslibrary/originals/4/IMG_2041.heic", 4.8_GB, 60},
    {"Movies/Talk at the harbour conference.mov", 14.2_GB, 320, seenLargeFile},
    {"Library/Safari/History.db", 40_MB, 1},
    {"Library/Preferences/com.apple.finder.plist", 1_MB, 2},

    // Harbour, in daily work.
    {"Developer/harbour/.git/index", 2_MB, 2},
    {"Developer/harbour/.git/objects/pack/pack-5d1c.pack", 310_MB, 2},
    {"Developer/harbour/node_modules/react-native/ReactAndroid/hermes.so", 1.6_GB, 6, seenPackages},
    {"Developer/harbour/node_modules/react-native-reanimated/android/build/reanimated.o", 1.8_GB, 2,
     seenBuildOutput},
    {"Developer/harbour/node_modules/react-native-screens/android/build/screens.aar", 240_MB, 2},
    {"Developer/harbour/android/app/build/intermediates/merged.dex", 5.4_GB, 2, seenBuildOutput},
    {"Developer/harbour/android/.gradle/8.10.2/fileHashes.bin", 90_MB, 2},
    {"Developer/harbour/ios/Pods/hermes-engine/hermes.xcframework", 2.4_GB, 6, seenBuildOutput},

    // Ferryboat.
    {"Developer/ferryboat/.git/index", 1_MB, 9},
    {"Developer/ferryboat/node_modules/expo/bundledNativeModules.js", 640_MB, 9},

    // Lighthouse, untouched since its client went quiet.
    {"Developer/clients/lighthouse/.git/index", 1_MB, 214},
    {"Developer/clients/lighthouse/node_modules/react-native/hermes.so", 1.3_GB, 220, seenPackages},
    {"Developer/clients/lighthouse/android/app/build/outputs/app-release.aab", 3.1_GB, 214},
    {"Developer/clients/lighthouse/ios/Pods/Flipper/Flipper.a", 1.9_GB, 214},

    // Birdlog.
    {"Developer/birdlog/.git/index", 1_MB, 20},
    {"Developer/birdlog/build/app/outputs/flutter.so", 1.9_GB, 20},
    {"Developer/birdlog/android/.gradle/8.7/fileHashes.bin", 60_MB, 20},
    {"Developer/birdlog/ios/Pods/geolocator/geolocator.a", 700_MB, 20},

    // The transit widget.
    {"Developer/transit-widget/.git/index", 1_MB, 5},
    {"Developer/transit-widget/app/build/intermediates/merged.dex", 2.6_GB, 5},
    {"Developer/transit-widget/app/.cxx/Debug/6k1t4v2h/arm64-v8a/router.o", 380_MB, 5},

    // Sundial.
    {"Developer/sundial/.git/index", 1_MB, 41},
    {"Developer/sundial/build/Sundial.build/Sundial.swiftmodule", 2.2_GB, 41, seenBuildOutput},
    {"Developer/sundial/Pods/SnapKit/SnapKit.a", 160_MB, 41},

    // Atlas.
    {"Developer/atlas/.git/index", 3_MB, 15},
};

constexpr Application bundles[] = {
    {"Android Studio", "com.google.android.studio", "2024.2", 3.1_GB, 60},
    {"Brave Browser", "com.brave.Browser", "1.73.97", 1.1_GB, 11},
    {"Docker", "com.docker.docker", "4.36.0", 2.2_GB, 118},
    {"Figma", "com.figma.Desktop", "124.7.4", 410_MB, 3},
    {"Firefox", "org.mozilla.firefox", "133.0", 430_MB, 11},
    {"Google Chrome", "com.google.Chrome", "131.0.6778", 1.3_GB, 5},
    {"Slack", "com.tinyspeck.slackmacgap", "4.41.105", 520_MB, 19},
    {"Visual Studio Code", "com.microsoft.VSCode", "1.96.0", 620_MB, 16},
    {"Xcode", "com.apple.dt.Xcode", "16.2", 11.8_GB, 30},
    {"Xcode_15.4", "com.apple.dt.Xcode", "15.4", 10.9_GB, 210},
};

// The store's package manager links packages into projects: what is only in the store is unused.
constexpr HardLink furtherNames[] = {
    {"Developer/atlas/node_modules/.pnpm/typescript@5.7.2/node_modules/typescript/lib/tsc.js",
     "Library/pnpm/store/v3/files/04/typescript"},
    {"Developer/atlas/node_modules/.pnpm/vite@6.0.3/node_modules/vite/dist/node.js",
     "Library/pnpm/store/v3/files/7b/vite"},
};

constexpr SymbolicLink links[] = {
    {".local/share/fnm/aliases/default", "../node-versions/v18.17.0/installation"},
    {"Developer/atlas/node_modules/typescript", ".pnpm/typescript@5.7.2/node_modules/typescript"},
    {"Developer/atlas/apps/site/node_modules/vite",
     "../../../node_modules/.pnpm/vite@6.0.3/node_modules/vite"},
};

constexpr std::string_view folders[] = {
    "Desktop",
    "Library/Android/sdk/system-images/android-31",
    "Music",
};

constexpr std::string_view unchangeable[] = {
    "Library/Caches/dotslash/5e",
};

constexpr TextAge ages[] = {
    {"", 60},
    {".android/avd/Pixel_5.avd", 95},
    {".android/avd/Pixel_8.avd", 1},
    {".expo", 9},
    {"Developer/atlas", 15},
    {"Developer/birdlog", 20},
    {"Developer/clients/lighthouse", 214},
    {"Developer/ferryboat", 9},
    {"Developer/harbour", 2},
    {"Developer/sundial", 41},
    {"Developer/transit-widget", 5},
    {"Library/Android/sdk/ndk/23.1.7779620", 790},
    {"Library/Android/sdk/ndk/25.1.8937393", 510},
    {"Library/Android/sdk/ndk/26.1.10909125", 160},
    {"Library/Android/sdk/ndk/27.2.12479018", 45},
    {"Library/Android/sdk/ndk-bundle", 1100},
};

constexpr std::string_view iOS15 = "com.apple.CoreSimulator.SimRuntime.iOS-15-5";
constexpr std::string_view iOS16 = "com.apple.CoreSimulator.SimRuntime.iOS-16-4";
constexpr std::string_view iOS17 = "com.apple.CoreSimulator.SimRuntime.iOS-17-5";
constexpr std::string_view iOS18 = "com.apple.CoreSimulator.SimRuntime.iOS-18-2";
constexpr std::string_view watchOS11 = "com.apple.CoreSimulator.SimRuntime.watchOS-11-2";
constexpr std::string_view phone = "com.apple.platform.iphonesimulator";
constexpr std::string_view watch = "com.apple.platform.watchsimulator";

// iOS 15 was removed.
constexpr SimulatorRuntime runtimes[] = {
    {"2B6F0E1C-9C1B-4E0A-8F57-1D7A3C5E9B10", iOS16, phone, "16.4", "20E247", 7.1_GB, 131},
    {"7D1C4A92-5E3F-4B7C-A6D8-0F2E4C6A8B31", iOS17, phone, "17.5", "21F79", 7.6_GB, 214},
    {"A04E5B73-2D9C-4F16-9B3A-6C8E0D2F4A52", iOS18, phone, "18.2", "22C150", 8.3_GB, 0},
    {"C93D6F58-8A1E-4C25-B0F4-3E5A7C9B1D74", watchOS11, watch, "11.2", "22S99", 4.0_GB, 12},
};

constexpr Simulator devices[] = {
    {"11F4B6D8-0A2C-4E3F-8B5D-7C9E1A3F5B01", "iPhone 13", iOS15, "Shutdown", 1.6_GB, 700, seen},
    {"22A5C7E9-1B3D-4F40-9C6E-8DAF2B406C12", "iPad Air (5th generation)", iOS15, "Shutdown", 1.1_GB,
     720, seen},
    {"33B6D8FA-2C4E-4051-AD7F-9EB03C517D23", "iPhone SE (3rd generation)", iOS16, "Shutdown",
     4.3_GB, 131, seenSimulatorData},
    {"44C7E90B-3D5F-4162-BE80-AFC14D628E34", "iPhone 14", iOS17, "Shutdown", 3.2_GB, 214},
    {"55D8FA1C-4E60-4273-8F91-B0D25E739F45", "iPhone 16", iOS18, "Shutdown", 6.4_GB, 2},
    {"66E90B2D-5F71-4384-90A2-C1E36F84A056", "iPhone 16 Pro", iOS18, "Booted", 2.1_GB, 0},
    {"77FA1C3E-6082-4495-A1B3-D2F47095B167", "iPad Pro 13-inch (M4)", iOS18, "Shutdown", 20_MB,
     std::nullopt},
    {"880B2D4F-7193-45A6-B2C4-E30581A6C278", "Apple Watch Series 10 (46mm)", watchOS11, "Shutdown",
     400_MB, 12},
};

constexpr int snapshots[] = {23, 14, 6, 2};

} // namespace

std::span<const SizedFile> sizedFiles() { return files; }
std::span<const Application> applications() { return bundles; }
std::span<const HardLink> hardLinks() { return furtherNames; }
std::span<const SymbolicLink> symbolicLinks() { return links; }
std::span<const std::string_view> emptyFolders() { return folders; }
std::span<const std::string_view> readOnlyFolders() { return unchangeable; }
std::span<const TextAge> textAges() { return ages; }
std::span<const SimulatorRuntime> simulatorRuntimes() { return runtimes; }
std::span<const Simulator> simulators() { return devices; }
std::span<const int> snapshotHours() { return snapshots; }

} // namespace tidewright::HomeContents
