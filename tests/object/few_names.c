/* A names library that knows two characters. */

const char* uniNamesList_name(unsigned long code_point);

const char* uniNamesList_name(unsigned long code_point) {
    switch (code_point) {
        case 0x00FF:
            return "SMALL Y WITH TWO DOTS";
        case 0xE031:
            return "NEVER ASKED FOR";
        default:
            return 0;
    }
}
