// fractiondemo: a host application of the fraction control, built from a Qt Designer form.
//
//   fractiondemo [--form FILE.ini]
//   fractiondemo --scripted OUT.png [--form FILE.ini]
//   fractiondemo --gallery DIR
//
// --form (or the environment variable FRACTIONDEMO_FORM) names the file that File > Save and
// File > Open use without asking. --scripted performs a short run of a few operations on the
// window, writes a picture of it to OUT.png, prints the picture's path and exits; its messages go
// to the event log instead of message boxes, so that it runs without a display. --gallery writes
// pictures of controls in several states and sizes and of the measurements page to DIR and exits.

#include "demowindow.h"
#include "scriptedrun.h"

#include "messageboxsink.h"

#include <QApplication>
#include <QFileInfo>

#include <cstdio>
#include <cstring>

namespace {

const char *usage = "usage: fractiondemo [--form FILE.ini] [--scripted OUT.png] [--gallery DIR]\n"
                    "  --form FILE.ini     file used by File > Save and File > Open without asking\n"
                    "                      (also FRACTIONDEMO_FORM)\n"
                    "  --scripted OUT.png  run a few operations, write a picture of the window, exit\n"
                    "  --gallery DIR       write pictures of controls and the measurements page, exit\n";

} // namespace

int main(int argc, char **argv)
{
    QString scripted, gallery;
    QString form = qEnvironmentVariable("FRACTIONDEMO_FORM");
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--scripted") == 0 && i + 1 < argc) {
            scripted = QString::fromLocal8Bit(argv[++i]);
        } else if (std::strcmp(argv[i], "--gallery") == 0 && i + 1 < argc) {
            gallery = QString::fromLocal8Bit(argv[++i]);
        } else if (std::strcmp(argv[i], "--form") == 0 && i + 1 < argc) {
            form = QString::fromLocal8Bit(argv[++i]);
        } else if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::fputs(usage, stdout);
            return 0;
        } else {
            std::fputs(usage, stderr);
            return 2;
        }
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("fractiondemo"));
    QApplication::setApplicationDisplayName(QStringLiteral("Fraction demo"));

    if (!gallery.isEmpty()) {
        if (!kelfractionint::scriptedrun::gallery(gallery)) {
            std::fprintf(stderr, "fractiondemo: cannot write into %s\n", qPrintable(gallery));
            return 1;
        }
        std::printf("%s\n", qPrintable(QFileInfo(gallery).absoluteFilePath()));
        return 0;
    }

    kelfractionint::demowindow window;
    window.setformfile(form);
    if (scripted.isEmpty()) {
        kelfractionint::installmessageboxsink();
        window.show();
        return app.exec();
    }

    window.logmessages();
    window.show();
    if (!kelfractionint::scriptedrun::run(window, scripted)) {
        std::fprintf(stderr, "fractiondemo: cannot write %s\n", qPrintable(scripted));
        return 1;
    }
    std::printf("%s\n", qPrintable(QFileInfo(scripted).absoluteFilePath()));
    return 0;
}
