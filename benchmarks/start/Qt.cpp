// SPDX-License-Identifier: MIT
//
// The same files by Qt's classes: QDomDocument, QJsonDocument, QImage and, for the settings as an
// INI file, QSettings. With "fonts" also the palette's fonts, which take a QGuiApplication.
#include <QDomDocument>
#include <QFile>
#include <QFont>
#include <QFontInfo>
#include <QGuiApplication>
#include <QImage>
#include <QJsonDocument>
#include <QSettings>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "benchmarks/start/Files.h"

namespace {

bool readsXml(const std::string& path, QDomDocument& document) {
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::ReadOnly) && document.setContent(&file);
}

bool hasFonts(const QDomDocument& palette) {
    const QDomNodeList fonts = palette.elementsByTagName("FONT");
    for (int i = 0; i < fonts.size(); ++i) {
        const QString face = fonts.at(i).toElement().attribute("FACE");
        if (QFontInfo(QFont(face)).family().isEmpty())
            return false;
    }
    return true;
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 2)
        return EXIT_FAILURE;
    const std::string root = arguments[1];
    std::unique_ptr<QGuiApplication> application;
    if (count > 2 && std::string_view(arguments[2]) == "fonts") {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application = std::make_unique<QGuiApplication>(count, arguments);
    }
    bool isGood = true;
    QDomDocument palette;
    for (const std::string& path : yg::benchmarks::startFiles(root)) {
        if (path.ends_with("app_config.xml")) {
            const QSettings settings(QString::fromStdString(root + "/storage/app_config.ini"),
                                     QSettings::IniFormat);
            isGood = !settings.allKeys().isEmpty() && isGood;
            continue;
        }
        QDomDocument document;
        isGood = readsXml(path, document) && isGood;
        if (path.ends_with("palette_white.xml"))
            palette = document;
    }
    for (const std::string& path : yg::benchmarks::startImages(root))
        isGood = !QImage(QString::fromStdString(path)).isNull() && isGood;
    QFile urls(QString::fromStdString(root + "/storage/request_urls_json.txt"));
    isGood = urls.open(QIODevice::ReadOnly) && QJsonDocument::fromJson(urls.readAll()).isObject() &&
             isGood;
    isGood = (!application || hasFonts(palette)) && isGood;
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
