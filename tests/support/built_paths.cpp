namespace kivo::test {

extern const char* const kSourceFolder = KIVO_SOURCE_FOLDER;
extern const char* const kProgramFolder = KIVO_PROGRAM_FOLDER;
extern const char* const kTestFolder = KIVO_TEST_FOLDER;
extern const char* const kExecutableSuffix = KIVO_EXECUTABLE_SUFFIX;

}  // namespace kivo::test
