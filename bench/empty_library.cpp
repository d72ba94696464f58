// A library with one function, beside which the driver's is loaded.
namespace bench {

[[gnu::visibility("default")]] int AnswerOfEmptyLibrary();

int AnswerOfEmptyLibrary() {
    return 0;
}

}  // namespace bench
