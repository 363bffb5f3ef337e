extern "C" int Answer() {
    return 42;
}
