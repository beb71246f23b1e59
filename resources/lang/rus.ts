<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="zh_CN">
<context>
    <name>ZoomWidget</name>
    <message>
        <source>CPU温度</source>
        <translation>Темп. ЦП</translation>
    </message>
    <message>
        <source>CPU使用率</source>
        <translation>Загр. ЦП</translation>
    </message>
    <message>
        <source>内存使用率</source>
        <translation>Память</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Время</translation>
    </message>
    <message>
        <source>功耗</source>
        <translation>Мощн.</translation>
    </message>
    <message>
        <source>日期</source>
        <translation>Дата</translation>
    </message>
    <message>
        <source>风扇转速</source>
        <translation>Вентил.</translation>
    </message>
    <message>
        <source>其他</source>
        <translation>Другое</translation>
    </message>
</context>
</TS>
