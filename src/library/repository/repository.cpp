#include "library/repository/repository.h"
namespace korel {
DAG UniqueIdentToObjectRef(RepositoryDesc*, const char*) { return DAG(); }
DAG GetObjectReference(RepositoryDesc*, DAG) { return DAG(); }
void AddObjectToPendingWrites(RepositoryDesc*, DAG) {}
DAG PutObjectReference(RepositoryDesc*, DAG, DAG) { return DAG(); }
}
