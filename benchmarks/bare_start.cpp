#include <QCoreApplication>
#include <QQmlEngine>

/// A process with the libraries that a plugin with a page needs, and nothing to do.
int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    QQmlEngine::setObjectOwnership(&application, QQmlEngine::CppOwnership);
    return 0;
}
