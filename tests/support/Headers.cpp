// A program needs a source; this one is there for its precompiled headers, which the tests share.

int main() {}
