#if defined(_WIN32)
#define TEST_API __declspec(dllexport)
#else
#define TEST_API __attribute__((visibility("default")))
#endif

extern "C" int test_library_answer(int question);
extern "C" TEST_API int test_needy_answer(int question);

int test_needy_answer(int question) { return test_library_answer(question) + 1; }
