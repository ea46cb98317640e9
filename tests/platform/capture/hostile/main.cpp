// A scanner's process that goes wrong: what it does is said by the environment.
#include <cstdlib>
#include <iostream>
#include <string>
#include <unistd.h>

int main()
{
    const char *how = std::getenv("MURN_TEST_SCANNER_FAULT"); // NOLINT(concurrency-mt-unsafe)
    const std::string fault = how ? how : "";
    for (std::string line; std::getline(std::cin, line);) {
        if (line.find("\"list\"") != std::string::npos && fault != "list") {
            std::cout << R"({"event":"devices","devices":[)"
                      << R"({"device":"one:1","vendor":"Acme","model":"S1"},)"
                      << R"({"device":"two:1","vendor":"Acme","model":"S1"}]})" << std::endl;
        } else if (line.find("\"open\"") != std::string::npos && fault != "open") {
            std::cout << "not an answer\n"
                      << R"({"event":"opened","units":[{"type":0,"source":"","resolutions":[],)"
                      << R"("width":0,"height":0}]})" << std::endl;
        } else if (fault == "crash" || fault == "list" || fault == "open") {
            std::abort();
        } else if (fault == "hang") {
            ::pause();
        } else if (fault == "empty") {
            std::cout << R"({"event":"failed","status":7,"message":"out of documents"})"
                      << std::endl;
        } else if (line.find("\"scan\"") != std::string::npos) {
            std::cout << R"({"event":"failed","status":9,"message":"Error during I/O"})"
                      << std::endl;
        }
    }
}
