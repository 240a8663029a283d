message(FATAL_ERROR "a module of the application, not of the library")
