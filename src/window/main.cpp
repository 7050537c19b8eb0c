#include "window/TunerApp.h"

int main() {
    CTunerApp app;
    return app.Main();
}
