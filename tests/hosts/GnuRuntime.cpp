int HostMain(int count, char** arguments);

int main(int count, char** arguments) { return HostMain(count, arguments); }
