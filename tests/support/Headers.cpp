// Nothing: with this file the headers that the tests share are compiled, once for all of them.
