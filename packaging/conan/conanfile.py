# SPDX-License-Identifier: MIT
# The recipe of the sources that it lies in: conan create packaging/conan
import re
from pathlib import Path

from conan import ConanFile
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load

required_conan_version = ">=2.0"


class YGConfigManagerRecipe(ConanFile):
    name = "ygconfigmanager"
    description = "Configuration library of a market-data terminal"
    license = "MIT"
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False], "fPIC": [True, False]}
    default_options = {"shared": True, "fPIC": True}
    implements = ["auto_shared_fpic"]

    def _sources(self):
        return Path(self.recipe_folder).parents[1]

    def set_version(self):
        self.version = re.search(r"VERSION (\d+\.\d+\.\d+)", load(self, str(self._sources() / "CMakeLists.txt")))[1]

    def export_sources(self):
        for part in ("CMakeLists.txt", "LICENSE", "README.md", "YGConfigManager/*", "cmake/*", "docs/*",
                     "examples/*", "schemas/*"):
            copy(self, part, str(self._sources()), self.export_sources_folder)

    def layout(self):
        cmake_layout(self)

    def validate(self):
        check_min_cppstd(self, 20)

    def requirements(self):
        self.requires("fontconfig/[>=2.14 <3]")
        self.requires("harfbuzz/[>=6]")
        self.requires("icu/[>=72]")
        self.requires("libcurl/[>=7.88 <9]")
        self.requires("libjpeg-turbo/[>=2.1 <4]")
        self.requires("libpng/[>=1.6 <2]")
        self.requires("libxml2/[>=2.9 <3]")
        self.requires("nlohmann_json/[>=3.11 <4]")
        self.requires("openssl/[>=3 <4]")
        self.requires("pugixml/[>=1.13 <2]")
        self.requires("zlib/[>=1.2 <2]")

    def generate(self):
        toolchain = CMakeToolchain(self)
        for variable in ("YG_BUILD_TOOL", "YG_BUILD_TESTS", "YG_BUILD_FUZZ"):
            toolchain.cache_variables[variable] = "OFF"
        toolchain.generate()
        CMakeDeps(self).generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()
        copy(self, "LICENSE", self.source_folder, str(Path(self.package_folder) / "licenses"))

    def package_info(self):
        # The package's own files for find_package, which have the exact names and dependencies.
        self.cpp_info.libs = ["YGConfigManager"]
        self.cpp_info.set_property("cmake_find_mode", "none")
        self.cpp_info.builddirs.append("lib/cmake/YGConfigManager")
