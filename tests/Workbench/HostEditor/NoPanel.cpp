// A module that can be loaded and is no panel.
extern "C" __attribute__((visibility("default"))) int somethingElse() {
    return 7;
}
