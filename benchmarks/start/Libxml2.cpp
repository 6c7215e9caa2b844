// SPDX-License-Identifier: MIT
//
// The same files by libxml2's tree and gdk-pixbuf: trees and images alone.
#include <cstdlib>
#include <string>

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <libxml/parser.h>

#include "benchmarks/start/Files.h"

int main(int count, char** arguments) {
    if (count != 2)
        return EXIT_FAILURE;
    const std::string root = arguments[1];
    bool isGood = true;
    for (const std::string& path : yg::benchmarks::startFiles(root)) {
        xmlDoc* const document = xmlReadFile(path.c_str(), nullptr, XML_PARSE_NONET);
        isGood = document && isGood;
        xmlFreeDoc(document);
    }
    for (const std::string& path : yg::benchmarks::startImages(root)) {
        GdkPixbuf* const image = gdk_pixbuf_new_from_file(path.c_str(), nullptr);
        isGood = image && isGood;
        if (image)
            g_object_unref(image);
    }
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
