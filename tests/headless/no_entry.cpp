extern "C" int notAnEntryPoint() {
    return 0;
}
