#include "app/application.h"

int main(int argc, char* argv[]) {
    slipbook::app::Application app(argc, argv);
    if (!app.Start()) {
        return 1;
    }
    return app.Run();
}
