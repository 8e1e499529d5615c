// suelo: the floor of the bench. It parses exactly the unit documents a request of
// cambioIP.cgi reads, in the same order and the same way (libxml2 from a descriptor, no
// network), and does nothing else: what a page or a save cannot cost less than.
//   suelo <document>...
#include <libxml/parser.h>

#include <fcntl.h>
#include <unistd.h>

int main(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const int fd = ::open(argv[i], O_RDONLY | O_CLOEXEC);
        if (fd < 0)
            continue;
        if (xmlDocPtr documento = xmlReadFd(fd, nullptr, "UTF-8", XML_PARSE_NONET))
            xmlFreeDoc(documento);
        ::close(fd);
    }
    return 0;
}
